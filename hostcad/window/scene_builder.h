// Takes entities apart into the lines and texts of a scene, down through their blocks.
#pragma once

#include <string_view>
#include <unordered_map>
#include <vector>

#include "hostcad/geometry/frame.h"
#include "hostcad/geometry/shape.h"
#include "hostcad/window/entity_looks.h"
#include "hostcad/window/scene.h"

namespace hostcad {

class SceneBuilder {
  public:
    SceneBuilder(const Drawing& drawing, Scene& scene);

    // Adds an entity's lines and texts to the scene's arrays. What cannot be shown has no box and is not
    // visible; the scene's remarks say so.
    SceneEntity build(ObjectId id);

  private:
    struct Layer {
        int colour = 7;
        bool shown = true;
        std::string_view lineType;
    };
    // How entities of a block look that leave it to the reference.
    struct Style {
        std::string_view layer;
        int colour = 7;
        std::string_view lineType;
    };

    const Layer& layer(std::string_view name);
    // The block of a name that a reference may show, or 0: a space is none.
    ObjectId block(std::string_view name);
    Style styleOf(const EntityLooks& looks, const Style& outer, bool inBlock);
    void add(const Frame& frame, ObjectId id, const Style& outer, bool inBlock);
    void addReference(const Frame& frame, ObjectId id, const Style& style);
    void addBlock(const Frame& frame, std::string_view name, const Style& style);
    void addContents(const Frame& frame, ObjectId block, const Style& style);
    void addText(const Frame& frame, Groups groups, bool isAttribute, bool showsTag);
    void addParagraph(const Frame& frame, ObjectId id);
    void addTextBox(const SceneText& text, size_t characters);
    // Stands a text at a point of a plane, and adds it.
    void place(const Frame& plane, Point at, double height, double angle, SceneText& text);
    std::string_view keep(std::string text);
    void addShape(bool isSolid);
    // Makes one area of the lines from a place on.
    void fillFrom(size_t firstLine);
    void begin(Fill fill = Fill::None);
    void vertex(const Point& p);
    void finish();
    bool isFull();

    const Drawing& drawing_;
    Scene& scene_;
    Shape shape_;
    std::unordered_map<std::string_view, Layer> layers_;
    double patternScale_ = 1;
    // The last answers: entities that follow each other are mostly on one layer, or references to one block.
    std::string_view lastLayerName_;
    const Layer* lastLayer_ = nullptr;
    std::string_view lastBlockName_;
    ObjectId lastBlock_ = kNoObject;

    // Of the entity at work.
    SceneEntity entity_;
    std::vector<ObjectId> blocks_;  // that it is within
    size_t pieces_ = 0;
    bool isShortened_ = false;
    uint32_t colour_ = 0;
    uint16_t pattern_ = 0;
    // Pieces within blocks, of all entities.
    size_t allPieces_ = 0;
};

}  // namespace hostcad
