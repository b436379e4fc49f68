#include "hostcad/window/status_fields.h"

#include <QLabel>
#include <QStatusBar>

#include "hostcad/lisp/error.h"
#include "hostcad/window/product_functions.h"
#include "platform/ui/qt/qt_text.h"

namespace hostcad {
namespace {

// Characters of a field. The whole is in its tooltip, and a small screen has room for two of them.
constexpr int kWidest = 40;

std::vector<std::pair<std::string, std::string>> fieldsOf(lisp::Interpreter& lisp) {
    try {
        return textPairs(callProduct(lisp, "WINDOW-STATUS").value_or(lisp::Value()));
    } catch (const lisp::Error&) {
        return {};
    }
}

}  // namespace

void StatusFields::show(lisp::Interpreter& lisp) {
    const auto fields = fieldsOf(lisp);
    while (labels_.size() < fields.size()) {
        auto* label = new QLabel;
        label->setTextFormat(Qt::PlainText);
        bar_.addPermanentWidget(label);
        labels_.push_back(label);
    }
    for (size_t i = 0; i < labels_.size(); ++i) {
        labels_[i]->setVisible(i < fields.size());
        if (i >= fields.size()) continue;
        const QFontMetrics metrics = labels_[i]->fontMetrics();
        const QString text = ui::toQt(fields[i].first);
        labels_[i]->setText(metrics.elidedText(text, Qt::ElideMiddle, kWidest * metrics.averageCharWidth()));
        labels_[i]->setToolTip(text + "\n" + ui::toQt(fields[i].second));
        labels_[i]->setAccessibleName(text);
    }
}

}  // namespace hostcad
