// The images of the sheet: their rows in the grid, the preview, and all that is done to them.
#pragma once

#include <string>
#include <vector>

#include "module/images/image_rows.h"
#include "platform/ui/dialog.h"

namespace norvane {

// Where new images of a record are kept.
struct ImagePlace {
    std::string binDirectory;  // of the module, ending in a separator
    std::string outputPath;    // a file or a connect string
    std::string table, key;
};

class ImagePanel {
  public:
    // The sheet round it.
    class Owner {
      public:
        virtual ~Owner() = default;
        // Whether images may be changed: the feature has a good name. A fault is told.
        virtual bool featureIsGood() = 0;
        // The rows of the grid in front of those of the images.
        virtual int promptRows() const = 0;
        // The texts of the image rows have changed.
        virtual void fitColumns() = 0;
        virtual ImagePlace imagePlace() const = 0;
    };

    // Dialog, grid (of two columns) and owner outlive it. The dialog has the controls of image_controls.
    ImagePanel(ui::Dialog& dialog, ui::Grid& grid, Owner& owner);

    // Before the dialog is seen.
    void open();
    // The images of a record, below the rows that are there.
    void load(const LoadedRecord& record);
    void clear();

    // Whether a button, key or cell was the panel's to deal with.
    bool command(int id);
    bool key(const ui::Key& key);
    bool cellChanged(ui::CellPosition at);
    // A radio button that was on was clicked.
    void clickedAgain(const ui::RadioButton& button);
    // Something in the grid was taken back.
    void undone();
    void drop(const std::vector<std::string>& paths);

    // What is written with the record.
    std::vector<OutputField> fields() const { return rows_.fields(); }

  private:
    int gridRow(int image) const { return owner_.promptRows() + image + 1; }
    // Makes the rows of the grid what the images are.
    void showRows();
    void showCurrent();
    void choose(int image);

    void addImages(const std::vector<std::string>& paths);
    void update();
    void remove();
    void step(int id);
    void view();
    void capture();
    // The file that a captured one becomes by the format that is set.
    std::string inFormat(const std::string& captured, bool wasThere);
    void pickCamera();
    void setFormat(int id);
    std::vector<std::string> otherFolders() const;

    ui::Dialog& dialog_;
    ui::Grid& grid_;
    Owner& owner_;
    ImageRows rows_;
};

}  // namespace norvane
