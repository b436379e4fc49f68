// The command line: a history of all that was printed, the present prompt's keywords to click, and a line to
// type.
#pragma once

#include <QWidget>
#include <functional>
#include <string_view>

#include "hostcad/editor/prompt.h"

class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPlainTextEdit;

namespace hostcad {

class CommandPanel : public QWidget {
  public:
    explicit CommandPanel(QWidget* parent = nullptr);

    std::function<void(const std::string&)> onLine;  // Enter, also on an empty line
    std::function<void()> onEscape;

    // Text as it comes; a carriage return writes the line anew.
    void write(std::string_view text);
    // Keywords stand in brackets in a prompt's text, with bars or slashes between them.
    void showPrompt(const std::string& prompt);
    void clearPrompt();
    void focusLine();
    QString history() const;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void removeKeywords();

    QPlainTextEdit* history_;
    QLabel* prompt_;
    QHBoxLayout* keywords_;
    QLineEdit* line_;
    QStringList typed_;
    int recalled_ = 0;
    bool rewritesLine_ = false;
};

}  // namespace hostcad
