#pragma once

#include <QObject>
#include <QSocketNotifier>
#include <QTimer>
#include <functional>
#include <string>

#include "adapters/device_lock.h"
#include "adapters/port_handle.h"
#include "adapters/qt_event_loop.h"
#include "link/buffered_port.h"
#include "link/line_clock.h"

namespace kelvo {

/// The PC's serial port in the Qt event loop. It is given up when its device says that it is gone,
/// and for nothing else: what the device does not take waits, and what it refuses is told.
class QtSerialPort : public QObject, public BufferedPort {
  Q_OBJECT

 public:
  explicit QtSerialPort(QtEventLoop& loop);
  ~QtSerialPort() override;

  /// The device behind "Com 1" .. "Com 6": an absolute path or a system name; empty for none.
  using DeviceOf = std::function<std::string(int number)>;
  void SetDevices(DeviceOf deviceOf) { deviceOf_ = std::move(deviceOf); }

  PortError SetPortNumber(std::int16_t number) override;
  PortError Open() override;
  void Close() override;
  bool CheckDevice() override;
  bool IsOpen() const override { return device_.IsOpen(); }
  std::string SetUp(const std::string& settings, Handshaking handshaking) override;

  void Write(std::string_view text) override;
  std::size_t OutBufferCount() const override;
  void DiscardOutput() override;
  std::chrono::nanoseconds OutBufferTime() const override;
  bool Held() const override;

  void SetLostHandler(std::function<void()> handler) override { lost_ = std::move(handler); }
  void SetErrorHandler(std::function<void(const std::string&)> handler) override {
    error_ = std::move(handler);
  }

 protected:
  void Look() override;

 private:
  PortError OpenDevice(const std::string& path);
  void CloseDevice();
  void Receive();
  void Send();
  void GoOnSending();
  void Sleep(std::chrono::nanoseconds longest);
  void Raise();
  void RaiseSoon();
  void Watch();
  void Lost();
  void Refused(int error, QSocketNotifier& what);
  std::size_t Waiting() const { return backlog_.size() + device_.Queued(); }
  Time TimeOf(std::size_t characters) const;

  QtEventLoop& loop_;
  DeviceLock lock_;
  PortHandle device_;
  QSocketNotifier readable_{QSocketNotifier::Read};
  QSocketNotifier writable_{QSocketNotifier::Write};
  QTimer raise_;
  QTimer watch_;
  LineClock line_;       // of what the device has taken
  std::string backlog_;  // what it has not
  DeviceOf deviceOf_;
  int number_ = 0;
  bool pseudoTerminal_ = false;
  std::string refusal_;  // not told yet
  bool told_ = false;
  struct {
    std::size_t waiting = 0;
    Time since{0};
  } mutable stuck_;  // how much waits, and since when it is as much
  std::function<void()> lost_;
  std::function<void(const std::string&)> error_;
};

}  // namespace kelvo
