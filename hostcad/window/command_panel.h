// The command line: a history of all that was printed, the present prompt with its keywords to click, and a
// line to type.
#pragma once

#include <QWidget>
#include <functional>
#include <string_view>

#include "hostcad/editor/prompt.h"

class QLabel;
class QLineEdit;
class QPlainTextEdit;

namespace hostcad {

class CommandPanel : public QWidget {
  public:
    explicit CommandPanel(QWidget* parent = nullptr);

    std::function<void(const std::string&)> onLine;  // Enter, also on an empty line
    std::function<void()> onEscape;
    std::function<void()> onDelete;  // the key, on an empty line

    // Text as it comes; a carriage return writes the line anew.
    void write(std::string_view text);
    void showPrompt(const Prompt& prompt);
    void clearPrompt();
    void focusLine();
    QString history() const;

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    QPlainTextEdit* history_;
    QLabel* prompt_;
    QLineEdit* line_;
    QStringList typed_;
    int recalled_ = 0;
    bool rewritesLine_ = false;
};

}  // namespace hostcad
