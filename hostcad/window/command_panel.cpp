#include "hostcad/window/command_panel.h"

#include <QFontDatabase>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QVBoxLayout>

#include "hostcad/window/hinted_line.h"
#include "platform/ui/qt/qt_text.h"

namespace hostcad {
namespace {

constexpr int kMostLines = 5000;

QString link(const QString& word, const QString& shown) {
    return "<a href=\"" + word.toHtmlEscaped() + "\">" + shown.toHtmlEscaped() + "</a>";
}

bool isUndoOrRedo(const QKeyEvent& key) {
    return (key.modifiers() & Qt::ControlModifier) && (key.key() == Qt::Key_Z || key.key() == Qt::Key_Y);
}

// The text of a prompt as rich text in which the keywords can be clicked. Prompts list them in brackets,
// "[Select/Number/<Pick>]", the default one in angles; those that the text does not have stand behind it.
QString promptWithLinks(const QString& text, const Keywords& keywords) {
    static const QRegularExpression kWords("[\\[(]([^\\])]*)[\\])]");
    QStringList missing;
    for (const std::string& word : keywords.shown()) missing << ui::toQt(word);
    QString rich;
    qsizetype done = 0;
    QRegularExpressionMatchIterator matches = kWords.globalMatch(text);
    while (matches.hasNext() && !keywords.empty()) {
        QRegularExpressionMatch match = matches.next();
        QStringList items;
        for (const QString& item : match.captured(1).split('/')) {
            QString bare = QString(item).remove('<').remove('>').trimmed();
            // "Auto keys on" is the keyword Auto and a word on what it does.
            auto keyword = keywords.match(bare.section(' ', 0, 0).toStdString());
            items << (keyword ? link(ui::toQt(*keyword), item) : item.toHtmlEscaped());
            if (keyword) missing.removeAll(ui::toQt(*keyword));
        }
        rich += text.mid(done, match.capturedStart(1) - done).toHtmlEscaped() + items.join('/');
        done = match.capturedEnd(1);
    }
    rich += text.mid(done).toHtmlEscaped();
    for (QString& word : missing) word = link(word, word);
    return missing.isEmpty() ? rich : rich + " " + missing.join(" ");
}

}  // namespace

CommandPanel::CommandPanel(QWidget* parent)
    : QWidget(parent),
      history_(new QPlainTextEdit),
      prompt_(new QLabel),
      line_(new HintedLine("Command or Lisp expression")) {
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    history_->setFont(fixed);
    history_->setReadOnly(true);
    history_->setMaximumBlockCount(kMostLines);
    history_->setFocusPolicy(Qt::ClickFocus);
    history_->setAccessibleName("Command history");
    line_->setFont(fixed);
    line_->setAccessibleName("Command line");
    line_->installEventFilter(this);
    prompt_->setTextFormat(Qt::RichText);
    prompt_->setWordWrap(true);
    prompt_->setTextInteractionFlags(Qt::LinksAccessibleByMouse);
    prompt_->setFocusPolicy(Qt::NoFocus);
    prompt_->setAccessibleName("Prompt");
    connect(prompt_, &QLabel::linkActivated, this, [this](const QString& word) {
        if (onLine) onLine(word.toStdString());
    });
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(4, 4, 4, 4);
    column->addWidget(history_, 1);
    column->addWidget(prompt_);
    column->addWidget(line_);
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
        cursor.insertText(ui::toQt(text.substr(start, end - start)));
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

void CommandPanel::showPrompt(const Prompt& prompt) {
    prompt_->setText(promptWithLinks(ui::toQt(prompt.text).trimmed(), prompt.keywords));
}

void CommandPanel::clearPrompt() {
    prompt_->setText("Command:");
}

void CommandPanel::focusLine() {
    line_->setFocus();
}
QString CommandPanel::history() const {
    return history_->toPlainText();
}

bool CommandPanel::eventFilter(QObject* watched, QEvent* event) {
    const bool isPress = event->type() == QEvent::KeyPress;
    if (watched != line_ || !(isPress || event->type() == QEvent::ShortcutOverride))
        return QWidget::eventFilter(watched, event);
    auto* key = static_cast<QKeyEvent*>(event);
    // Without a text there is no typing to take back: the keys are those of the window, for the drawing.
    if (isUndoOrRedo(*key) && line_->text().isEmpty()) {
        event->ignore();
        return true;
    }
    if (!isPress) return false;
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
        case Qt::Key_Delete:
            if (!line_->text().isEmpty()) return false;
            if (onDelete) onDelete();
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
