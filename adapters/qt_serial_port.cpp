#include "adapters/qt_serial_port.h"

#include <QStringList>
#include <algorithm>
#include <utility>

#include "adapters/port_device.h"

namespace kelvo {
namespace {

using std::chrono::nanoseconds;

// How soon a device is noticed to be gone that reports nothing by itself.
constexpr std::chrono::milliseconds watchInterval{100};
// A line that nobody has used for a while is looked at less often: an idle program costs nothing,
// and the driver's own error mostly comes sooner.
constexpr std::chrono::milliseconds quietWatchInterval{250};
constexpr std::chrono::seconds quietAfter{5};
constexpr int highestPort = 16;
// What an adapter may hold a character back before the PC sees it.
constexpr std::chrono::milliseconds echoDelay{50};
constexpr std::size_t echoKept = 10000;

QSerialPort::Parity ParityOf(char letter) {
  switch (letter) {
    case 'S':
      return QSerialPort::SpaceParity;
    case 'O':
      return QSerialPort::OddParity;
    case 'E':
      return QSerialPort::EvenParity;
    default:
      return QSerialPort::NoParity;
  }
}

}  // namespace

QtSerialPort::QtSerialPort(QtEventLoop& loop) : loop_(loop) {
  WatchEvery(watchInterval);
  connect(&watch_, &QTimer::timeout, this, [this] {
    if (open_ && HungUp(Handle())) Lost();
    WatchEvery(line_.IdleFor(loop_.Now()) < quietAfter ? watchInterval : quietWatchInterval);
  });
  connect(&port_, &QSerialPort::readyRead, this, [this] {
    const QByteArray text = port_.readAll();
    Received(text.toStdString());
    RaiseReceiveEvents();
  });
  connect(&port_, &QSerialPort::errorOccurred, this, [this](QSerialPort::SerialPortError error) {
    const bool gone = error == QSerialPort::ResourceError || error == QSerialPort::ReadError ||
                      error == QSerialPort::WriteError || error == QSerialPort::DeviceNotFoundError;
    if (open_ && gone) Lost();
  });
  connect(&loop_, &QtEventLoop::Released, this, &QtSerialPort::RaiseReceiveEvents,
          Qt::QueuedConnection);
}

PortError QtSerialPort::SetPortNumber(std::int16_t number) {
  if (number < 0 || number > highestPort) return PortNumberInvalid;
  number_ = number;
  return PortOk;
}

PortError QtSerialPort::Open() {
  if (open_) return PortAlreadyOpen;
  if (port_.isOpen()) port_.close();
  const std::string device = deviceOf_ ? deviceOf_(number_) : std::string();
  if (device.empty()) return PortNotAvailable;
  if (device.front() == '/') {
    const DeviceState state = StateOfDevice(device);
    if (state == DeviceState::Missing) return PortNotAvailable;
    if (state == DeviceState::NoPermission) return PortNoPermission;
  }
  const PortError error = OpenDevice(device);
  if (error != PortOk && port_.isOpen()) port_.close();
  return error;
}

PortError QtSerialPort::OpenDevice(const std::string& device) {
  port_.setPortName(QString::fromStdString(device));
  if (!port_.open(QIODevice::ReadWrite)) {
    switch (port_.error()) {
      case QSerialPort::DeviceNotFoundError:
        return PortNotAvailable;
      case QSerialPort::PermissionError:  // permission has been tested: another program holds it
        return PortInUse;
      default:
        return PortDeviceError;
    }
  }
  if (!LockDevice(Handle())) return PortInUse;
  pseudoTerminal_ = IsPseudoTerminal(device);
  // Characters from before survive a reopening.
  port_.clear();
  input_.clear();
  line_ = LineClock();
  ForgetWritten();
  ExpectEcho({});
  open_ = true;
  watch_.start();
  return PortOk;
}

void QtSerialPort::Close() {
  watch_.stop();
  open_ = false;
  input_.clear();
  if (port_.isOpen()) port_.close();
}

std::string QtSerialPort::SetUp(const std::string& settings, Handshaking handshaking) {
  if (!open_) return "Die Schnittstelle ist nicht geöffnet.";
  if (!ApplySettings(settings, handshaking)) {
    return "Einstellung " + settings + ": " + port_.errorString().toStdString();
  }
  // With RTS/CTS the driver moves the line by itself.
  const bool ownLine = !pseudoTerminal_ && handshaking != Handshaking::RtsCts;
  if (ownLine && !port_.setRequestToSend(true)) return port_.errorString().toStdString();
  return {};
}

bool QtSerialPort::ApplySettings(const std::string& settings, Handshaking handshaking) {
  const QStringList parts = QString::fromStdString(settings).split(u',');
  const int baud = parts.value(0).toInt();
  const int bits = parts.value(2).toInt();
  const int stopBits = parts.value(3).toInt();
  const char parity = parts.value(1).isEmpty() ? 'N' : parts.value(1).front().toLatin1();
  if (baud <= 0 || !port_.setBaudRate(baud)) return false;
  if (!ApplyFrame(parity, bits, stopBits)) return false;
  const bool bare = pseudoTerminal_;  // 8 bits, no parity, whatever is asked for
  line_.SetRate(baud, 1 + (bare ? 8 : bits) + (bare || parity == 'N' ? 0 : 1) + stopBits);
  return port_.setFlowControl(handshaking == Handshaking::RtsCts && !pseudoTerminal_
                                  ? QSerialPort::HardwareControl
                                  : QSerialPort::SoftwareControl);
}

bool QtSerialPort::ApplyFrame(char parity, int bits, int stopBits) {
  if (!port_.setStopBits(stopBits == 2 ? QSerialPort::TwoStop : QSerialPort::OneStop)) return false;
  if (pseudoTerminal_) return true;
  return port_.setDataBits(bits == 7 ? QSerialPort::Data7 : QSerialPort::Data8) &&
         port_.setParity(ParityOf(parity));
}

void QtSerialPort::Write(std::string_view text) {
  if (!open_ || text.empty()) return;
  Fetch();
  const bool paused = line_.IdleFor(loop_.Now()) > echoDelay;
  if (paused) ExpectEcho({});
  if (written_.empty() || paused || written_.size() > echoKept) {
    written_.clear();
    beforeWrite_ = input_.size();
  }
  written_ += text;
  line_.Written(text.size(), loop_.Now());
  WatchEvery(watchInterval);
  port_.write(text.data(), static_cast<qint64>(text.size()));
  port_.flush();
  if (traffic_) traffic_(Direction::ToTerminal, text);
}

std::size_t QtSerialPort::DriverCount() const {
  return static_cast<std::size_t>(port_.bytesToWrite()) + DriverQueue(Handle());
}

std::size_t QtSerialPort::OutBufferCount() const {
  return open_ ? std::max(line_.CharactersLeft(loop_.Now()), DriverCount()) : 0;
}

nanoseconds QtSerialPort::OutBufferTime() const {
  const nanoseconds left = line_.Left(loop_.Now());
  // Beyond the line's own time only the driver knows; ask it again soon.
  return left > nanoseconds(0) ? left : std::chrono::milliseconds(1);
}

void QtSerialPort::DiscardOutput() {
  if (!open_) return;
  port_.clear(QSerialPort::Output);
  line_.Discarded(loop_.Now());
}

// Setting an interval starts it anew, which must not happen with each text.
void QtSerialPort::WatchEvery(std::chrono::milliseconds interval) {
  if (watch_.intervalAsDuration() != interval) watch_.setInterval(interval);
}

void QtSerialPort::DiscardInput() {
  if (!open_) return;
  Fetch();
  input_.erase(0, std::min(beforeWrite_, input_.size()));
  if (line_.IdleFor(loop_.Now()) > echoDelay) {
    ExpectEcho({});
  } else if (echoToCome_.empty()) {
    ExpectEcho(EchoHeldBack());
  }
  input_.clear();
  ForgetWritten();
}

void QtSerialPort::ForgetWritten() {
  written_.clear();
  beforeWrite_ = 0;
}

void QtSerialPort::ExpectEcho(std::string echo) {
  echoToCome_ = std::move(echo);
  echoCome_ = 0;
}

// An adapter may hold characters back for some milliseconds: the rest of the echo, or all of it, is
// still to come. An answer never begins like a command.
std::string QtSerialPort::EchoHeldBack() const {
  const std::size_t echo = EchoLength(input_);
  return echo == input_.size() ? written_.substr(echo) : std::string();
}

// How much of a text is the echo of what was written.
std::size_t QtSerialPort::EchoLength(std::string_view text) const {
  const std::size_t most = std::min(text.size(), written_.size());
  return static_cast<std::size_t>(std::mismatch(text.begin(),
                                                text.begin() + static_cast<std::ptrdiff_t>(most),
                                                written_.begin())
                                      .first -
                                  text.begin());
}

void QtSerialPort::DiscardEcho() {
  if (!open_) return;
  // An answer arrives one character's time after the last bit at the earliest.
  const bool late = line_.IdleFor(loop_.Now()) >= line_.CharacterTime();
  Fetch();
  input_.erase(0, std::min(beforeWrite_, input_.size()));
  ExpectEcho(EchoHeldBack());
  input_.erase(0, late ? EchoLength(input_) : input_.size());
}

std::string QtSerialPort::Input() {
  const std::size_t length = inputLen_ == 0 ? input_.size() : static_cast<std::size_t>(inputLen_);
  std::string text = input_.substr(0, length);
  input_.erase(0, text.size());
  // Who reads takes the echo with it; the next text is compared from its own beginning.
  if (!text.empty()) ForgetWritten();
  return text;
}

// Takes over what has arrived without going through the event loop.
void QtSerialPort::Fetch() {
  bool gone = false;
  Received(port_.readAll().toStdString());
  Received(ReadAvailable(Handle(), gone));
  if (gone) Lost();
}

void QtSerialPort::Received(const std::string& text) {
  if (text.empty()) return;
  const std::string_view rest = std::string_view(echoToCome_).substr(echoCome_);
  const std::size_t most = std::min(text.size(), rest.size());
  const auto same = static_cast<std::size_t>(
      std::mismatch(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(most), rest.begin())
          .first -
      text.begin());
  if (same < most) {  // no echo after all, but a Terminal that itself repeats the command
    input_.append(echoToCome_, 0, echoCome_).append(text);
    ExpectEcho({});
  } else {
    input_.append(text, same);
    echoCome_ += same;
    if (echoCome_ == echoToCome_.size()) ExpectEcho({});
  }
  if (traffic_) traffic_(Direction::FromTerminal, text);
}

void QtSerialPort::RaiseReceiveEvents() {
  if (raising_ || loop_.Held()) return;
  raising_ = true;
  while (open_ && threshold_ == 1 && receive_ && !input_.empty()) {
    const std::size_t before = input_.size();
    receive_();
    if (input_.size() >= before) break;  // nobody wants it; it stays for the next exchange to drop
  }
  raising_ = false;
}

void QtSerialPort::Lost() {
  if (!std::exchange(open_, false)) return;
  watch_.stop();
  input_.clear();
  // Not inside the device's own signal.
  QMetaObject::invokeMethod(
      this,
      [this] {
        if (!open_ && port_.isOpen()) port_.close();
        if (lost_) lost_();
      },
      Qt::QueuedConnection);
}

}  // namespace kelvo
