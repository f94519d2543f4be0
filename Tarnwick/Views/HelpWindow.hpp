#pragma once
// The help window: topics with a search field on the left, the chosen topic on the right.

#include <QWidget>
#include <string>
#include <vector>

#include "Tarnwick/Model/HelpText.hpp"

class QLabel;
class QLineEdit;
class QListWidget;
class QStackedWidget;
class QTextBrowser;

namespace tarnwick {

class HelpWindow : public QWidget {
  Q_OBJECT
public:
  explicit HelpWindow(QWidget* parent = nullptr);

  QLineEdit* searchField() const { return search_; }
  QListWidget* topicList() const { return list_; }
  QTextBrowser* page() const { return page_; }
  /// The id of the topic shown; empty when none is.
  const std::string& selectedID() const { return selected_; }
  /// Shows the topic with `id`, clearing a search that hides it.
  void selectTopic(const std::string& id);

private:
  void searchChanged();
  void render(const HelpTopic& topic);

  HelpText::Index index_;
  QLineEdit* search_;
  QStackedWidget* sidebar_;
  QListWidget* list_;
  QLabel* nothing_;
  QTextBrowser* page_;
  std::string selected_;
};

} // namespace tarnwick
