#pragma once
// Texts of a flashing run: stage texts, log lines and the number formats they use.

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

/// The locale that decides how numbers are written, in POSIX order: LC_ALL, else LC_NUMERIC,
/// else LANG; "C" when none is set. A `NumericLocaleOverride` on the calling thread wins.
std::string numericLocale();

/// The decimal separator of a locale name such as "de_DE.UTF-8": the system's own definition
/// when the locale is installed, else the usual one of its language and region.
char decimalSeparatorOf(std::string_view localeName);

/// Makes the calling thread write numbers as in another locale while it lives (tests).
class NumericLocaleOverride {
public:
  explicit NumericLocaleOverride(std::string localeName);
  ~NumericLocaleOverride();
  NumericLocaleOverride(const NumericLocaleOverride&) = delete;
  NumericLocaleOverride& operator=(const NumericLocaleOverride&) = delete;

private:
  std::optional<std::string> previous_;
};

/// Seconds with exactly one decimal in the user's numeric locale, then " s" ("3.4 s", "3,4 s"),
/// whatever the interface language.
std::string formatSeconds(double seconds);

/// A byte count in 1024-based units as memory sizes are written ("512 bytes", "30 KB", "1.4 MB").
std::string formatByteCount(std::int64_t bytes);

/// "0x" and the value in upper-case hexadecimal without leading zeros ("0x10000", "0x0").
std::string formatAddress(std::uint32_t address);

} // namespace tarnwick

namespace tarnwick::L10n::State {
std::string flash();
std::string ready();
std::string flashing();
std::string lastFlashSucceeded();
std::string lastFlashFailed();
} // namespace tarnwick::L10n::State

namespace tarnwick::L10n::Stage {
std::string connecting();
std::string connectingAttempt(int attempt);
std::string holdBoot();
std::string writing(const std::string& name);
std::string verifying(const std::string& name);
std::string restarting();
std::string done();
std::string failed();
std::string stopped();
} // namespace tarnwick::L10n::Stage

namespace tarnwick::L10n::Log {
std::string flashingOn(const std::string& product, const std::string& port);
std::string connecting();
std::string holdBoot();
std::string chip(const std::string& chip);
std::string chipAndMAC(const std::string& chip, const std::string& mac);
std::string speed(std::int64_t baud);
std::string bootloaderOn(const std::string& port);
std::string writeTo(const std::string& name, const std::string& address, const std::string& size);
std::string writtenIn(const std::string& name, const std::string& seconds);
std::string verified(const std::string& name);
std::string doneIn(const std::string& seconds);
std::string newBoardOn(const std::string& port);
std::string filesFrom(std::int64_t count, const std::string& folder);
std::string openedProduct(const std::string& name);
std::string partitionsApplicationIn(std::int64_t count, const std::string& partition);
std::string stopped();
/// After a stop: why the board must be flashed again.
std::string partlyWritten();
/// A run stopped before the board answered.
std::string notWritten();
/// Once per ESP8266 run: why there is no verification and no speed change.
std::string esp8266Limits();
/// Once per network connection whose server does not confirm line changes.
std::string linesUnconfirmed();
std::string log();
} // namespace tarnwick::L10n::Log
