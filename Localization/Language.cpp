#include "Localization/Language.hpp"

#include <cctype>
#include <cstdlib>
#include <mutex>

namespace tarnwick {

namespace {
thread_local std::optional<Language> threadOverride;
} // namespace

std::string_view code(Language language) {
  switch (language) {
  case Language::en: return "en";
  case Language::nl: return "nl";
  case Language::de: return "de";
  case Language::fr: return "fr";
  case Language::es: return "es";
  }
  return "en";
}

std::optional<Language> languageFromCode(std::string_view raw) {
  for (Language language : allLanguages) {
    if (code(language) == raw) return language;
  }
  return std::nullopt;
}

std::string languageCodeOf(std::string_view identifier) {
  std::string result;
  for (char c : identifier) {
    if (!std::isalpha(static_cast<unsigned char>(c))) break;
    result += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  // "C" and "POSIX" name no language; real codes have two or three letters.
  if (result.size() < 2 || result.size() > 3) return {};
  return result;
}

Language chooseLanguage(const std::vector<std::string>& preferredLanguages) {
  for (const std::string& identifier : preferredLanguages) {
    if (auto language = languageFromCode(languageCodeOf(identifier))) return *language;
  }
  return Language::en;
}

std::vector<std::string> preferredLanguagesFromEnvironment() {
  std::vector<std::string> result;
  if (const char* list = std::getenv("LANGUAGE")) {
    std::string_view rest = list;
    while (!rest.empty()) {
      auto colon = rest.find(':');
      auto entry = rest.substr(0, colon);
      if (!entry.empty()) result.emplace_back(entry);
      if (colon == std::string_view::npos) break;
      rest.remove_prefix(colon + 1);
    }
  }
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
    if (const char* value = std::getenv(name); value && *value) result.emplace_back(value);
  }
  return result;
}

Language currentLanguage() {
  if (threadOverride) return *threadOverride;
  static std::once_flag once;
  static Language chosen = Language::en;
  std::call_once(once, [] { chosen = chooseLanguage(preferredLanguagesFromEnvironment()); });
  return chosen;
}

LanguageOverride::LanguageOverride(Language language) : previous_(threadOverride) {
  threadOverride = language;
}

LanguageOverride::~LanguageOverride() { threadOverride = previous_; }

} // namespace tarnwick
