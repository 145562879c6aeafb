#include "adapters/qt_serial_port.h"

#include <QStringList>
#include <algorithm>
#include <system_error>
#include <thread>
#include <utility>

#include "adapters/port_device.h"

namespace kelvo {
namespace {

using std::chrono::milliseconds;
using std::chrono::nanoseconds;

// How often is looked after what the device does not tell of by itself.
constexpr milliseconds kWatchInterval{100};
// A line that should be free for so long, and on which nothing moves, is held.
constexpr milliseconds kHeldAfter{250};
constexpr milliseconds kHeldPause{20};
constexpr int kHighestPort = 16;

// What a device usually refuses with, in the operator's language.
std::string Description(int error) {
  const std::error_code code(error, std::system_category());
  if (code == std::errc::io_error) return "Ein- oder Ausgabefehler";
  if (code == std::errc::invalid_argument) return "Das kann das Gerät nicht";
  return code.message();
}

// A pseudo-terminal has 8 bits and no parity, whatever is asked for.
LineSettings Settings(const std::string& text, Handshaking handshaking, bool pseudoTerminal) {
  const QStringList parts = QString::fromStdString(text).split(u',');
  LineSettings line;
  line.baud = parts.value(0).toInt();
  line.stopBits = parts.value(3).toInt() == 2 ? 2 : 1;
  line.handshaking = handshaking;
  if (pseudoTerminal) return line;
  line.bits = parts.value(2).toInt() == 7 ? 7 : 8;
  const QString parity = parts.value(1);
  if (!parity.isEmpty()) line.parity = parity.front().toLatin1();
  return line;
}

}  // namespace

QtSerialPort::QtSerialPort(QtEventLoop& loop) : loop_(loop) {
  raise_.setSingleShot(true);
  watch_.setInterval(kWatchInterval);
  connect(&readable_, &QSocketNotifier::activated, this, [this] {
    Receive();
    Raise();
  });
  connect(&writable_, &QSocketNotifier::activated, this, &QtSerialPort::GoOnSending);
  connect(&raise_, &QTimer::timeout, this, &QtSerialPort::Raise);
  connect(&watch_, &QTimer::timeout, this, &QtSerialPort::Watch);
  connect(&loop_, &QtEventLoop::Released, this, &QtSerialPort::RaiseSoon);
  loop_.SetSleeper([this](nanoseconds longest) { Sleep(longest); });
}

QtSerialPort::~QtSerialPort() {
  loop_.SetSleeper({});
  QtSerialPort::Close();
}

PortError QtSerialPort::SetPortNumber(std::int16_t number) {
  if (number < 0 || number > kHighestPort) return PortNumberInvalid;
  number_ = number;
  return PortOk;
}

PortError QtSerialPort::Open() {
  if (IsOpen()) return PortAlreadyOpen;
  const std::string device = deviceOf_ ? deviceOf_(number_) : std::string();
  if (device.empty()) return PortNotAvailable;
  const std::string path = DevicePath(device);
  const DeviceState state = StateOfDevice(path);
  if (state == DeviceState::Missing || state == DeviceState::NotSerial) return PortNotAvailable;
  if (state == DeviceState::NoPermission) return PortNoPermission;
  const PortError error = OpenDevice(path);
  if (error != PortOk) CloseDevice();
  return error;
}

PortError QtSerialPort::OpenDevice(const std::string& path) {
  pseudoTerminal_ = IsPseudoTerminal(path);
  if (!pseudoTerminal_ && !lock_.Take(path)) return PortInUse;
  const PortError error = device_.Open(path);
  if (error != PortOk) return error;
  line_ = LineClock();
  told_ = false;
  for (QSocketNotifier* notifier : {&readable_, &writable_}) notifier->setSocket(device_.Get());
  readable_.setEnabled(true);
  return PortOk;
}

void QtSerialPort::Close() {
  Discarding();
  // The system would wait for a held line, up to half a minute.
  if (Held()) device_.DiscardOutput();
  CloseDevice();
}

bool QtSerialPort::CheckDevice() {
  if (IsOpen() && device_.HungUp()) Lost();
  return IsOpen();
}

void QtSerialPort::CloseDevice() {
  readable_.setEnabled(false);
  writable_.setEnabled(false);
  watch_.stop();
  device_.Close();
  lock_.Release();
  backlog_.clear();
  refusal_.clear();
  ClearInput();
}

std::string QtSerialPort::SetUp(const std::string& settings, Handshaking handshaking) {
  if (!IsOpen()) return "Die Schnittstelle ist nicht geöffnet.";
  SettingUp(settings, handshaking);
  const LineSettings line = Settings(settings, handshaking, pseudoTerminal_);
  int error = device_.SetUp(line);
  const bool set = error == 0;
  if (set) line_.SetRate(line.baud, line.BitsOfCharacter());
  // With RTS/CTS the driver moves the line by itself.
  if (set && handshaking != Handshaking::RtsCts) error = device_.RequestToSend();
  if (error == 0) return {};
  if (device_.HungUp()) {
    Lost();
    return "Das Gerät ist verschwunden.";
  }
  return set ? Description(error) : "Einstellung " + settings + ": " + Description(error);
}

void QtSerialPort::Look() {
  Receive();
  RaiseSoon();
}

QtSerialPort::Time QtSerialPort::TimeOf(std::size_t characters) const {
  return line_.CharacterTime() * static_cast<Time::rep>(characters);
}

void QtSerialPort::Write(std::string_view text) {
  if (!IsOpen() || text.empty()) return;
  Receive();
  const Time now = loop_.Now();
  Written(text, now, now + line_.Left(now) + TimeOf(backlog_.size() + text.size()));
  if (!IsOpen()) return;  // it was lost, or closed by who was told of what had come
  backlog_ += text;
  Send();
}

// Hands over what the device takes. The rest goes on when it takes more.
void QtSerialPort::Send() {
  int error = 0;
  const Time now = loop_.Now();  // the first character leaves while the system still writes
  const std::size_t taken = device_.Write(backlog_, error);
  line_.Written(taken, now);
  backlog_.erase(0, taken);
  stuck_ = {backlog_.size() + taken, now};
  writable_.setEnabled(!backlog_.empty());
  if (error != 0) Refused(error, writable_);
}

void QtSerialPort::GoOnSending() {
  if (backlog_.empty()) return writable_.setEnabled(false);
  Send();
  const Time now = loop_.Now();
  Delayed(now + line_.Left(now) + TimeOf(backlog_.size()));
}

std::size_t QtSerialPort::OutBufferCount() const {
  if (!IsOpen()) return 0;
  return backlog_.size() + std::max(line_.CharactersLeft(loop_.Now()), device_.Queued());
}

nanoseconds QtSerialPort::OutBufferTime() const {
  const nanoseconds left = line_.Left(loop_.Now());
  if (left > nanoseconds(0)) return left + TimeOf(backlog_.size());
  // Beyond the line's own time only the driver knows; ask it again soon.
  return Held() ? kHeldPause : milliseconds(1);
}

bool QtSerialPort::Held() const {
  const std::size_t waiting = IsOpen() ? Waiting() : 0;
  const Time now = loop_.Now();
  if (waiting != stuck_.waiting) stuck_ = {waiting, now};
  return waiting > 0 && std::min(now - stuck_.since, line_.IdleFor(now)) > kHeldAfter;
}

// What the line should have carried by now may still be on its way behind the system, in an adapter
// or before a simulator that a busy machine holds up: it is no more to be taken back.
void QtSerialPort::DiscardOutput() {
  if (OutBufferCount() == 0) return;
  Discarding();
  device_.DiscardOutput();
  backlog_.clear();
  writable_.setEnabled(false);
  line_.Discarded(loop_.Now());
}

// Takes what has come; tells nobody yet.
void QtSerialPort::Receive() {
  if (!IsOpen()) return;
  int error = 0;
  const std::string text = device_.Read(error);
  const Time now = loop_.Now();
  // What the line should have carried by now, but has not, comes back later too.
  const bool due = EchoExpected() && line_.IdleFor(now) > Time(0);
  const std::size_t late = due ? Waiting() : 0;
  if (late > 0) Delayed(now + TimeOf(late));
  Received(text, now);
  if (error != 0) Refused(error, readable_);
  if (EchoBegun() && !watch_.isActive()) watch_.start();
}

void QtSerialPort::Sleep(nanoseconds longest) {
  if (!IsOpen()) return std::this_thread::sleep_for(longest);
  if (!device_.Wait({readable_.isEnabled(), writable_.isEnabled()}, longest)) return;
  Receive();
  GoOnSending();
  RaiseSoon();
}

// Not inside a wait that only paints; what comes then is raised after it.
void QtSerialPort::Raise() {
  if (!loop_.Held()) RaiseReceiveEvents();
}

void QtSerialPort::RaiseSoon() {
  if (Buffered() > 0 && ReceiveThreshold() == 1) raise_.start(0);
}

// Runs while something has begun like an echo, and while the device refuses something, which is
// tried again then.
void QtSerialPort::Watch() {
  const std::string refusal = std::exchange(refusal_, {});
  readable_.setEnabled(true);
  Receive();
  GoOnSending();
  if (!IsOpen()) return;
  ExpireEcho(loop_.Now());
  if (refusal_.empty() && !EchoBegun()) watch_.stop();
  Raise();
  if (!refusal.empty() && error_ && !std::exchange(told_, true)) error_(refusal);
}

void QtSerialPort::Refused(int error, QSocketNotifier& what) {
  if (device_.HungUp()) return Lost();
  what.setEnabled(false);  // it would report without end
  refusal_ = Description(error);
  if (!watch_.isActive()) watch_.start();
}

void QtSerialPort::Lost() {
  CloseDevice();
  QMetaObject::invokeMethod(
      this,
      [this] {
        if (lost_) lost_();
      },
      Qt::QueuedConnection);
}

}  // namespace kelvo
