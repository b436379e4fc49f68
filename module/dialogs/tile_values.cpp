#include "module/dialogs/tile_values.h"

#include <algorithm>
#include <vector>

#include "platform/text/text.h"

namespace norvane {

namespace {

// How many numbers tell where a view looks; 0 for another tile.
size_t numbersOf(TileType type) {
    return type == TileType::kPointView ? 2 : type == TileType::kWindowView ? 4 : 0;
}

void setView(TileRecord& tile, const std::string& text) {
    std::vector<double> numbers;
    for (const std::string& number : text::split(text, ' '))
        if (!number.empty()) numbers.push_back(text::toReal(number));
    if (numbers.size() == numbersOf(tile.type)) std::copy(numbers.begin(), numbers.end(), tile.view.begin());
}

std::string viewText(const TileRecord& tile) {
    std::vector<std::string> numbers;
    for (size_t i = 0; i < numbersOf(tile.type); ++i) numbers.push_back(text::format("%f", tile.view[i]));
    return text::join(numbers, " ");
}

std::string selectionText(const ui::List& list) {
    std::vector<std::string> indices;
    for (int index : list.selection()) indices.push_back(std::to_string(index));
    return text::join(indices, " ");
}

}  // namespace

void SetTileValue(TileRecord& tile, ui::Control& control, const std::string& text) {
    tile.value = text;
    const int number = static_cast<int>(text::toLong(text));
    if (numbersOf(tile.type) > 0)
        setView(tile, text);
    else if (auto* toggle = dynamic_cast<ui::CheckBox*>(&control))
        toggle->check(text == "1");
    else if (auto* radio = dynamic_cast<ui::RadioButton*>(&control))
        radio->check(text == "1");
    else if (auto* items = dynamic_cast<ui::ItemControl*>(&control))
        items->select(number);
    else if (auto* bar = dynamic_cast<ui::Progress*>(&control))
        bar->setPosition(number);
    else if (auto* tabs = dynamic_cast<ui::Tabs*>(&control))
        tabs->setPage(number);
    else if (auto* picture = dynamic_cast<ui::Picture*>(&control))
        picture->setPath(text);
    else
        control.setText(text);
}

std::string TileValue(const TileRecord& tile, const ui::Control& control) {
    if (numbersOf(tile.type) > 0) return viewText(tile);
    if (auto* toggle = dynamic_cast<const ui::CheckBox*>(&control)) return toggle->checked() ? "1" : "0";
    if (auto* radio = dynamic_cast<const ui::RadioButton*>(&control)) return radio->checked() ? "1" : "0";
    if (auto* list = dynamic_cast<const ui::List*>(&control); list && list->multiple())
        return selectionText(*list);
    if (auto* dropDown = dynamic_cast<const ui::DropDown*>(&control); dropDown && dropDown->editable())
        return dropDown->text();
    if (auto* items = dynamic_cast<const ui::ItemControl*>(&control))
        return items->selected() < 0 ? "" : std::to_string(items->selected());
    if (auto* bar = dynamic_cast<const ui::Progress*>(&control)) return std::to_string(bar->position());
    if (auto* tabs = dynamic_cast<const ui::Tabs*>(&control)) return std::to_string(tabs->page());
    if (auto* picture = dynamic_cast<const ui::Picture*>(&control)) return picture->path();
    return control.text();
}

}  // namespace norvane
