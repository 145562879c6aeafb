#pragma once

#include <chrono>

// The intervals of the timers and of the waits, each in this one place.

namespace kelvo {

/// tmrTimeout at the start of the program.
inline constexpr std::chrono::milliseconds kTimeoutAtStart{2000};
/// tmrRS485 until the option `rs485wait` replaces it.
inline constexpr std::chrono::milliseconds kPauseAtStart{300};
/// tmrSofort: how long a drawing rests before it is sent by itself.
inline constexpr std::chrono::milliseconds kDrawingInterval{500};
/// tmrReturn: how often is looked whether a lost device is back.
inline constexpr std::chrono::milliseconds kReturnInterval{1000};
/// A query's, which it leaves behind.
inline constexpr std::chrono::milliseconds kQueryInterval{500};
/// A collection by time.
inline constexpr std::chrono::milliseconds kCollectionInterval{100};
/// A write that is proven waits so long for its acknowledge.
inline constexpr std::chrono::milliseconds kProvenWriteInterval{2000};
/// What every operation with a time of its own leaves behind.
inline constexpr std::chrono::milliseconds kUsualInterval{1000};

/// How long an answer that has not come in its time may still come.
inline constexpr std::chrono::milliseconds kOverdueFor{5000};
/// Behind an acknowledge that may be the overdue one, so long is listened for the right one.
inline constexpr std::chrono::milliseconds kSecondAcknowledge{250};

}  // namespace kelvo
