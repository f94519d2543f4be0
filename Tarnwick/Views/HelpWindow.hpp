#pragma once
// The help window: topics with a search field on the left, the chosen topic on the right.

#include <QDialog>
#include <QHash>
#include <QImage>
#include <QPointer>
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
  /// The window showing a screenshot at full size, while it is open.
  QDialog* pictureViewer() const { return picture_; }
  /// Opens the screenshot a link of the page points to at full size.
  void showPicture(const QUrl& url);

protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;

private:
  void searchChanged();
  void render(const HelpTopic& topic);
  /// Lays the topic out again when the page's width has changed enough to matter to pictures.
  void rerenderForWidth();

  HelpText::Index index_;
  QLineEdit* search_;
  QStackedWidget* sidebar_;
  QListWidget* list_;
  QLabel* nothing_;
  QTextBrowser* page_;
  std::string selected_;
  int renderedWidth_ = 0;
  /// The help's pictures as decoded, by file.
  QHash<QString, QImage> pictures_;
  /// The caption of each picture on the page, by its link.
  QHash<QString, QString> captions_;
  QPointer<QDialog> picture_;
};

} // namespace tarnwick
