// How the panel of records looks: its controls, their places and what is said of them.
#pragma once

#include "platform/ui/panel.h"

namespace norvane {

class RecordsForm : public ui::Panel {
  public:
    static constexpr int kResource = 1801;
    static constexpr int kTable = 1002;
    static constexpr int kFilter = 1004;
    static constexpr int kChoice = 1006;  // its items are those of RecordChoice
    static constexpr int kFault = 1007;
    static constexpr int kGrid = 1008;
    static constexpr int kCount = 1009;
    static constexpr int kState = 1010;
    static constexpr int kZoom = 1011;
    static constexpr int kMode = 1012;  // its items are those of SelectionMode
    static constexpr int kSelectShown = 1013;
    static constexpr int kNew = 1014;
    static constexpr int kErase = 1015;
    static constexpr int kCopy = 1016;
    static constexpr int kSave = 1017;
    static constexpr int kEraseNew = 1018;

  protected:
    RecordsForm();

    ui::Grid& grid() const { return get<ui::Grid>(kGrid); }
    // Writes a line below the rows.
    void say(const std::string& text);

  private:
    void addControls();
    void placeControls();
    void explainControls();
};

}  // namespace norvane
