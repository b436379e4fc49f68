#include "hostcad/window/command_panel.h"

#include <QFontDatabase>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTextBlock>
#include <QVBoxLayout>

namespace hostcad {
namespace {

constexpr int kMostLines = 5000;

}  // namespace

CommandPanel::CommandPanel(QWidget* parent)
    : QWidget(parent),
      history_(new QPlainTextEdit),
      prompt_(new QLabel),
      keywords_(new QHBoxLayout),
      line_(new QLineEdit) {
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    history_->setFont(fixed);
    history_->setReadOnly(true);
    history_->setMaximumBlockCount(kMostLines);
    history_->setFocusPolicy(Qt::ClickFocus);
    history_->setAccessibleName("Command history");
    line_->setFont(fixed);
    line_->setPlaceholderText("Command or Lisp expression");
    line_->setAccessibleName("Command line");
    line_->installEventFilter(this);
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(prompt_);
    bottom->addLayout(keywords_);
    bottom->addWidget(line_, 1);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(4, 4, 4, 4);
    column->addWidget(history_, 1);
    column->addLayout(bottom);
}

void CommandPanel::write(std::string_view text) {
    QTextCursor cursor(history_->document());
    cursor.movePosition(QTextCursor::End);
    size_t start = 0;
    auto flush = [&](size_t end) {
        if (end == start) return;
        if (rewritesLine_) {
            cursor.movePosition(QTextCursor::StartOfBlock, QTextCursor::KeepAnchor);
            cursor.removeSelectedText();
            rewritesLine_ = false;
        }
        cursor.insertText(QString::fromUtf8(text.data() + start, static_cast<int>(end - start)));
    };
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\r' && text[i] != '\n') continue;
        flush(i);
        start = i + 1;
        if (text[i] == '\r') {
            rewritesLine_ = true;
        } else {
            cursor.insertBlock();
            rewritesLine_ = false;
        }
    }
    flush(text.size());
    history_->setTextCursor(cursor);
    history_->ensureCursorVisible();
}

void CommandPanel::removeKeywords() {
    while (QLayoutItem* item = keywords_->takeAt(0)) {
        item->widget()->hide();
        item->widget()->deleteLater();
        delete item;
    }
}

void CommandPanel::showPrompt(const std::string& prompt) {
    removeKeywords();
    QString text = QString::fromStdString(prompt).trimmed();
    // "[Select/Number/<Pick>]" and "(Select/Number/<Pick>)": what is between are words to click.
    static const QRegularExpression kChoice("[\\[(]([^\\])]*/[^\\])]*)[\\])]");
    QRegularExpressionMatch match = kChoice.match(text);
    if (match.hasMatch())
        for (QString word : match.captured(1).split('/')) {
            word.remove('<').remove('>');
            auto* button = new QPushButton(word.trimmed());
            button->setFocusPolicy(Qt::NoFocus);
            connect(button, &QPushButton::clicked, this, [this, word] {
                if (onLine) onLine(word.trimmed().toStdString());
            });
            keywords_->addWidget(button);
        }
    prompt_->setText(text);
}

void CommandPanel::clearPrompt() {
    removeKeywords();
    prompt_->setText("Command:");
}

void CommandPanel::focusLine() {
    line_->setFocus();
}
QString CommandPanel::history() const {
    return history_->toPlainText();
}

bool CommandPanel::eventFilter(QObject* watched, QEvent* event) {
    if (watched != line_ || event->type() != QEvent::KeyPress) return QWidget::eventFilter(watched, event);
    auto* key = static_cast<QKeyEvent*>(event);
    switch (key->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter: {
            QString text = line_->text();
            line_->clear();
            if (!text.trimmed().isEmpty()) typed_ << text;
            recalled_ = typed_.size();
            if (onLine) onLine(text.toStdString());
            return true;
        }
        case Qt::Key_Escape:
            line_->clear();
            if (onEscape) onEscape();
            return true;
        case Qt::Key_Up:
        case Qt::Key_Down:
            recalled_ = std::clamp(recalled_ + (key->key() == Qt::Key_Up ? -1 : 1), 0,
                                   static_cast<int>(typed_.size()));
            line_->setText(recalled_ < typed_.size() ? typed_[recalled_] : QString());
            return true;
        default:
            return false;
    }
}

}  // namespace hostcad
