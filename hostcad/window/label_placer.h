// Places the labels of the current drawing in a picture, so that none is over another.
//
// One after the other, in the order of the drawing, takes the first of its places that is free, and is left
// out where none is. While the view is moved at one scale, labels stay where they are; a label that comes
// into view finds room between them.
#pragma once

#include <QSizeF>
#include <cstdint>
#include <span>
#include <vector>

#include "hostcad/geometry/label_spots.h"
#include "hostcad/window/label_text.h"
#include "hostcad/window/scene.h"
#include "hostcad/window/scene_painter.h"
#include "hostcad/window/taken_cells.h"
#include "platform/ads/overlay.h"

namespace hostcad {

enum class LabelAlignment : uint8_t { Left, Centre, Right };

// Sizes are in pixels of the desktop.
struct PlacedLabel {
    ObjectId entity = kNoObject;
    // Of the overlay sets: as long as these do not change.
    const overlay::Label* label = nullptr;
    const overlay::LabelStyle* style = nullptr;
    PlanePoint at;                // the middle of its box, in the world
    float angle = 0;              // radians
    float width = 0, height = 0;  // of its box, with the room round the text
    float capital = 0;            // height
    LabelAlignment alignment = LabelAlignment::Centre;
};

class LabelPlacer {
  public:
    // The scene shows the current drawing, and stays the caller's.
    explicit LabelPlacer(const Scene& scene) : scene_(scene) {}

    // The labels for what a picture of this size shows, and for `margin` pixels round it. No new label is put
    // into the part that is `covered`, from the picture's upper left corner. Sizes are in pixels of the
    // desktop, as is the scale of the place.
    const std::vector<PlacedLabel>& place(const ViewPlace& place, QSizeF size, double margin,
                                          const QRectF& covered = {});
    // Of the labels that were placed last, those of what a picture shows.
    overlay::LabelCounts counts(const ViewPlace& place, QSizeF size) const;

  private:
    struct Item {
        size_t place = 0;  // of its entity in the scene
        ObjectId entity = kNoObject;
        const overlay::Label* label = nullptr;
        const overlay::LabelStyle* style = nullptr;
        LabelSize size;
        bool isPlaced = false;
    };
    struct KnownSpots {
        ObjectId entity = kNoObject;
        uint64_t revision = 0;  // of the entity in the scene
        overlay::Placement wish = overlay::Placement::ByEntity;
        LabelSpots spots;
    };
    struct Candidate {
        LabelBox box;
        LabelAlignment alignment = LabelAlignment::Centre;
    };

    // Takes in what has changed; true when something has.
    bool update();
    void list();
    void keepPlaced();
    void placeNew();
    void put(Item& item);
    const LabelSpots& spotsOf(const Item& item);
    // What is larger than the picture, and would be labelled beyond it, has its label in what is seen of it.
    bool isLabelledBeyond(const Item& item, const LabelSpots& spots) const;
    bool isLargerThanSeen(const Item& item) const;
    std::span<const Candidate> candidatesFor(const Item& item, const LabelSpots& spots);
    void addBeside(const Box& box, double halfWidth, double halfHeight);
    void addAlong(const LabelSpots& spots, double halfWidth, double halfHeight);
    double capitalOf(const overlay::LabelStyle& style) const {
        return style.isInPixels ? style.height : style.height * scale_;
    }

    const Scene& scene_;
    uint64_t setsRevision_ = 0;
    uint64_t sceneRevision_ = 0;
    std::vector<Item> items_;        // by place in the scene
    std::vector<uint32_t> knownAt_;  // by place in the scene: one more than that in known_
    std::vector<KnownSpots> known_;

    // Of the last placing. Pixels are those of the world times the scale, down.
    double scale_ = 0;
    QRectF area_;
    Box seen_;  // of the world
    TakenCells cells_;
    std::vector<PlacedLabel> placed_;
    std::vector<size_t> placedItems_;  // of items_, in the order of placed_
    std::vector<PlanePoint> leftOut_;  // where they would be
    std::vector<Item*> found_;         // to be placed, in the order of the drawing
    std::vector<Candidate> candidates_;
};

}  // namespace hostcad
