#pragma once
// The built-in help: its topics as plain values, in the interface language, and the texts of the
// help window. Texts may carry Markdown emphasis (**bold**, `code`); the help view renders it.

#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace tarnwick {

/// One row of a two-column table.
struct HelpRow {
  std::string key;
  std::string value;
  bool operator==(const HelpRow&) const = default;
};

/// One piece of a topic, shown in order.
struct HelpBlock {
  struct paragraph {
    std::string text;
    bool operator==(const paragraph&) const = default;
  };
  struct heading {
    std::string text;
    bool operator==(const heading&) const = default;
  };
  struct bullets {
    std::vector<std::string> items;
    bool operator==(const bullets&) const = default;
  };
  struct table {
    std::vector<HelpRow> rows;
    bool operator==(const table&) const = default;
  };
  /// Shown highlighted, with the label "Tip".
  struct tip {
    std::string text;
    bool operator==(const tip&) const = default;
  };
  /// An image of the running program; `name` is the image's file name among the assets.
  struct screenshot {
    std::string name;
    std::string caption;
    bool operator==(const screenshot&) const = default;
  };

  using Kind = std::variant<paragraph, heading, bullets, table, tip, screenshot>;
  Kind value;

  bool operator==(const HelpBlock&) const = default;
  /// Every text the reader sees in the block, joined by spaces (a screenshot gives its caption).
  std::string text() const;
};

/// A page of the help window.
struct HelpTopic {
  /// Stable across languages; the window selects topics by it.
  std::string id;
  std::string title;
  /// The name of the symbol shown beside the title; `L10n::Help::icon` maps it to an icon.
  std::string symbol;
  std::vector<HelpBlock> blocks;
  bool operator==(const HelpTopic&) const = default;
};

/// Where the desktop finds the icon for a topic's symbol.
struct HelpIcon {
  /// A name of the freedesktop icon naming scheme, or the file name (without extension) of one of
  /// the application's own icons.
  std::string name;
  /// One of the application's own icons, `Assets/icons/` + `name` + ".svg"; otherwise a name of
  /// the icon theme (the generic help icon of an unknown symbol).
  bool own = false;
  bool operator==(const HelpIcon&) const = default;
};

} // namespace tarnwick

namespace tarnwick::L10n::Help {

/// The nine topics in the interface language, always in the same order with the same ids:
/// "start", "products", "esp", "arduino", "production", "network", "troubleshooting", "privacy",
/// "shortcuts".
std::vector<HelpTopic> topics();

/// The icon for a topic symbol; an unknown symbol gives the theme's generic help icon.
HelpIcon icon(std::string_view symbol);

/// Every screenshot the topics name, in order of first appearance, without repeats.
std::vector<std::string> screenshotNames();

/// "Tarnwick Help": the window title and the menu item that opens it.
std::string windowTitle();
/// "Search help": the placeholder of the search field.
std::string searchPlaceholder();
/// "No topics found": the sidebar when the search matches nothing.
std::string noTopicsFound();
/// "Tip": the label of a highlighted tip.
std::string tipLabel();
/// The tooltip of a screenshot in the help, which opens at full size when clicked.
std::string fullSizeHint();

} // namespace tarnwick::L10n::Help
