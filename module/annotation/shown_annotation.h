// What the window shows of the records: the labels and colours that the drawing keeps, in step with links and
// records.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "module/annotation/kept_annotation.h"

namespace norvane {

// Tables of so many records are read again after each command that may have changed them. Labels and colours
// of larger tables stay as they are when records change, until somebody asks for them.
constexpr size_t kMostRecordsBetweenCommands = 200'000;

class ShownAnnotation {
  public:
    // Of the current drawing. There is nothing else that is shown of it under the names of features.
    static ShownAnnotation& OfDrawing();

    // Shows what the drawing keeps as it is now. It costs little where nothing has changed: neither what is
    // kept, nor the links, nor the databases. all: reads the records in any case. What cannot be shown is
    // told on the command line, once as long as it stays the same.
    void refresh(bool all);

    // Entities that have a label or colour of the feature now.
    size_t labelled(const std::string& feature) const { return countOf(labels_, feature); }
    size_t coloured(const std::string& feature) const { return countOf(colours_, feature); }

  private:
    // What a set that is shown stands on.
    struct Basis {
        std::string definition;
        uint64_t links = 0;     // of the feature, as one number
        std::string databases;  // when they were written last
        bool operator==(const Basis&) const = default;
    };
    struct Shown {
        Basis basis;
        size_t entities = 0, records = 0;
        std::vector<std::string> problems;
    };
    using Sets = std::map<std::string, Shown>;  // by feature
    struct Links {
        uint64_t sum = 0;
        std::vector<std::string> databases;  // outputs and templates, where they are
    };

    ShownAnnotation() = default;
    ~ShownAnnotation();
    ShownAnnotation(const ShownAnnotation&) = delete;
    ShownAnnotation& operator=(const ShownAnnotation&) = delete;

    static size_t countOf(const Sets& sets, const std::string& feature);
    void followDrawing();
    void readLinks();
    Basis basisOf(const std::string& feature, std::string definition) const;
    bool isOnServer(const std::string& feature) const;
    // Whether a set has to be made anew.
    bool isDue(Sets& sets, const std::string& feature, const Basis& basis, const char* what, bool all) const;
    static Shown showLabels(const std::string& feature, const FeatureLabels& labels);
    static Shown showColours(const std::string& feature, const FeatureColours& colours);
    static void tell(const char* what, const std::string& feature, const Shown& now, const Shown& before);

    long drawing_ = 0;  // its serial
    int observer_ = 0;
    bool haveEntitiesChanged_ = true;
    bool isNewDrawing_ = true;
    std::map<std::string, Links> links_;  // by feature
    Sets labels_, colours_;
    std::vector<std::string> remarks_;
};

}  // namespace norvane
