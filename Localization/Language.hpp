#pragma once
// The interface languages and the one-time choice among them.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

/// The five interface languages, in catalogue order.
enum class Language { en, nl, de, fr, es };

/// All languages in catalogue order.
inline constexpr Language allLanguages[] = {Language::en, Language::nl, Language::de, Language::fr,
                                            Language::es};

/// The raw code of a language ("en", "nl", "de", "fr", "es").
std::string_view code(Language language);

/// The language whose raw code is exactly `code`.
std::optional<Language> languageFromCode(std::string_view code);

/// The lower-cased language part of a locale identifier ("de-CH" and "de_CH.UTF-8" give "de");
/// empty when the identifier has none ("C", "POSIX", "").
std::string languageCodeOf(std::string_view identifier);

/// The first preferred identifier whose language code is supported decides; English otherwise.
Language chooseLanguage(const std::vector<std::string>& preferredLanguages);

/// The user's preferred languages from the environment: the entries of LANGUAGE
/// (colon-separated), then LC_ALL, LC_MESSAGES and LANG.
std::vector<std::string> preferredLanguagesFromEnvironment();

/// The interface language: chosen once from the environment on first use, then fixed for the
/// process. A `LanguageOverride` on the calling thread takes precedence.
Language currentLanguage();

/// Makes the calling thread see another language while it lives. Tests use it to read every text
/// in every language; the process-wide choice is not changed.
class LanguageOverride {
public:
  explicit LanguageOverride(Language language);
  ~LanguageOverride();
  LanguageOverride(const LanguageOverride&) = delete;
  LanguageOverride& operator=(const LanguageOverride&) = delete;

private:
  std::optional<Language> previous_;
};

} // namespace tarnwick
