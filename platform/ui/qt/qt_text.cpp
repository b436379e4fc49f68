#include "platform/ui/qt/qt_text.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QScreen>
#include <QTextDocument>

namespace ui {
namespace {

struct NamedKey {
    int code;
    const char* name;
};
constexpr NamedKey kNamedKeys[] = {
    {Qt::Key_Return, "Enter"},
    {Qt::Key_Enter, "Enter"},
    {Qt::Key_Escape, "Escape"},
    {Qt::Key_Tab, "Tab"},
    {Qt::Key_Backtab, "Tab"},
    {Qt::Key_Space, "Space"},
    {Qt::Key_Backspace, "Backspace"},
    {Qt::Key_Delete, "Delete"},
    {Qt::Key_Insert, "Insert"},
    {Qt::Key_Home, "Home"},
    {Qt::Key_End, "End"},
    {Qt::Key_PageUp, "PageUp"},
    {Qt::Key_PageDown, "PageDown"},
    {Qt::Key_Left, "Left"},
    {Qt::Key_Right, "Right"},
    {Qt::Key_Up, "Up"},
    {Qt::Key_Down, "Down"},
};

std::string nameOf(const QKeyEvent& event) {
    for (const NamedKey& key : kNamedKeys)
        if (event.key() == key.code) return key.name;
    if (event.key() >= Qt::Key_F1 && event.key() <= Qt::Key_F12)
        return "F" + std::to_string(event.key() - Qt::Key_F1 + 1);
    // With a modifier the text of a key is a control character or nothing: its name is the letter itself.
    bool modified = event.modifiers() & (Qt::ControlModifier | Qt::AltModifier);
    if (modified && event.key() >= Qt::Key_Space && event.key() <= Qt::Key_AsciiTilde)
        return std::string(1, static_cast<char>(event.key()));
    QString text = event.text();
    return text.isEmpty() || !text.at(0).isPrint() ? std::string() : fromQt(text);
}

}  // namespace

QString tipOf(const QString& text) {
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text;
}

std::optional<Key> keyOf(const QKeyEvent& event) {
    Key key;
    key.name = nameOf(event);
    if (key.name.empty()) return std::nullopt;
    key.shift = event.modifiers() & Qt::ShiftModifier;
    key.control = event.modifiers() & Qt::ControlModifier;
    key.alt = event.modifiers() & Qt::AltModifier;
    key.repeated = event.isAutoRepeat();
    return key;
}

QFont qtFont(const Font& font) {
    QFont qt(toQt(font.family));
    if (font.family == "Courier New" || font.family == "Lucida Console") qt.setStyleHint(QFont::Monospace);
    // A height of characters with their leading is a little more than the size of the font.
    qreal scale = QGuiApplication::primaryScreen()
                      ? QGuiApplication::primaryScreen()->logicalDotsPerInch() / 96.0
                      : 1.0;
    qt.setPixelSize(std::max(1, qRound(font.height * 0.82 * scale)));
    qt.setWeight(font.weight >= 700 ? QFont::Bold : QFont::Normal);
    return qt;
}

}  // namespace ui
