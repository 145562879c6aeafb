#pragma once

#include <QObject>
#include <QSerialPort>
#include <QTimer>
#include <string>

#include "adapters/qt_event_loop.h"
#include "base/serial_port.h"
#include "link/line_clock.h"

namespace kelvo {

/// The PC's serial port through Qt. It is closed at the first sign that the device is gone: left
/// open it would report errors without end, or none at all, at full processor load.
class QtSerialPort : public QObject, public SerialPort {
  Q_OBJECT

 public:
  explicit QtSerialPort(QtEventLoop& loop);
  ~QtSerialPort() override { QtSerialPort::Close(); }

  /// The device behind "Com 1" .. "Com 6": an absolute path or a system name; empty for none.
  using DeviceOf = std::function<std::string(int number)>;
  void SetDevices(DeviceOf deviceOf) { deviceOf_ = std::move(deviceOf); }

  PortError SetPortNumber(std::int16_t number) override;
  PortError Open() override;
  void Close() override;
  bool IsOpen() const override { return open_; }
  std::string SetUp(const std::string& settings, Handshaking handshaking) override;

  void Write(std::string_view text) override;
  std::size_t OutBufferCount() const override;
  void DiscardOutput() override;
  std::chrono::nanoseconds OutBufferTime() const override;

  std::size_t InBufferCount() const override { return input_.size(); }
  void DiscardInput() override;
  void DiscardEcho() override;
  std::string Input() override;
  int InputLen() const override { return inputLen_; }
  void SetInputLen(int length) override { inputLen_ = length; }

  void SetReceiveThreshold(int characters) override { threshold_ = characters; }
  int ReceiveThreshold() const override { return threshold_; }
  void SetReceiveHandler(std::function<void()> handler) override { receive_ = std::move(handler); }
  void SetLostHandler(std::function<void()> handler) override { lost_ = std::move(handler); }
  void SetTrafficListener(TrafficListener listener) override { traffic_ = std::move(listener); }

 private:
  PortError OpenDevice(const std::string& device);
  bool ApplySettings(const std::string& settings, Handshaking handshaking);
  bool ApplyFrame(char parity, int bits, int stopBits);
  void Fetch();
  void Received(const std::string& text);
  std::size_t EchoLength(std::string_view text) const;
  void ExpectEcho(std::string echo);
  std::string EchoHeldBack() const;
  void ForgetWritten();
  void RaiseReceiveEvents();
  void WatchEvery(std::chrono::milliseconds interval);
  void Lost();
  std::size_t DriverCount() const;
  int Handle() const { return static_cast<int>(port_.handle()); }

  QtEventLoop& loop_;
  QSerialPort port_;
  QTimer watch_;
  LineClock line_;
  DeviceOf deviceOf_;
  int number_ = 0;
  bool open_ = false;
  bool pseudoTerminal_ = false;
  std::string input_;
  std::string written_;          // without a pause that an echo could not bridge
  std::size_t beforeWrite_ = 0;  // characters of input_ that were there before written_
  std::string echoToCome_;       // dropped as it arrives, unless something else comes after all
  std::size_t echoCome_ = 0;     // characters of it that have arrived
  int inputLen_ = 1;
  int threshold_ = 0;
  bool raising_ = false;
  std::function<void()> receive_;
  std::function<void()> lost_;
  TrafficListener traffic_;
};

}  // namespace kelvo
