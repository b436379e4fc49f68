#include "hostcad/window/listed_attributes.h"

#include <limits>

#include "platform/text/text.h"

namespace hostcad {
namespace {

std::vector<std::string> textsOf(lisp::Interpreter& lisp, const char* name) {
    std::vector<std::string> texts;
    if (const lisp::Symbol* symbol = lisp.find(name))
        for (lisp::Items item(symbol->value); !item.done(); item.next())
            if ((*item).isString()) texts.push_back((*item).asString());
    return texts;
}

// Takes a text when its tag stands before that of the text so far.
class FirstText {
  public:
    explicit FirstText(const std::vector<std::string>& tags) : tags_(tags) {}
    void offer(std::string_view tag, std::string_view text) {
        for (size_t i = 0; i < tags_.size() && i < place_; ++i)
            if (text::equalNoCase(tag, tags_[i])) {
                place_ = i;
                text_ = text;
            }
    }
    std::string_view text() const { return text_; }

  private:
    const std::vector<std::string>& tags_;
    size_t place_ = std::numeric_limits<size_t>::max();
    std::string_view text_;
};

}  // namespace

ListedAttributes::ListedAttributes(lisp::Interpreter& lisp)
    : numberTags_(textsOf(lisp, "LIST-NUMBER-TAGS$")),
      descriptionTags_(textsOf(lisp, "LIST-DESCRIPTION-TAGS$")) {}

ListedAttributes::Texts ListedAttributes::of(const Drawing& drawing, ObjectId entity) const {
    if (!hasNumbers() && !hasDescriptions()) return {};
    FirstText number(numberTags_), description(descriptionTags_);
    for (ObjectId part = drawing.firstPart(entity); part; part = drawing.nextPart(part)) {
        if (drawing.type(part) != "ATTRIB") break;  // vertices
        Groups groups = drawing.groups(part);
        std::string_view text = text::trim(textOf(groups, 1));
        if (text.empty()) continue;
        number.offer(textOf(groups, 2), text);
        description.offer(textOf(groups, 2), text);
    }
    return {number.text(), description.text()};
}

}  // namespace hostcad
