// What may be typed into the cells of a table's records: the rules of its columns, and those of the template
// for records of a feature.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "module/prompting/prompt_model.h"
#include "module/store/cell_values.h"
#include "module/store/stored_record.h"

namespace norvane {

class RecordRules {
  public:
    // keyFields: fields by which links find records, besides PT_ID. Neither they nor GIS_KEY can be changed.
    // Without a template (an empty path, or no such file) the rules are those of the columns. What the engine
    // refuses of the template is thrown.
    RecordRules(const std::vector<CDaoFieldInfo>& fields, const std::string& templatePath,
                const std::vector<std::string>& keyFields = {});

    // The cell of a field in a record: a drop-down for a list, fixed for what cannot be changed: keys,
    // counters, binary values, what is computed, and texts that do not fit into one line.
    ui::CellType cell(const RecordValues& record, size_t field) const;
    bool isLocked(const RecordValues& record, size_t field) const;
    // The prompt of the template, with the mark of a required one; the name of the field where there is none.
    std::string prompt(const RecordValues& record, size_t field) const;
    // A value as the cell shows it.
    std::string text(const RecordValues& record, size_t field) const;

    // A text as the value of a field, or the sentence that tells why it is none. What a required one had
    // cannot be taken out; one that was empty before may stay so.
    TakenValue take(const RecordValues& record, size_t field, const std::string& text) const;
    // What becomes different by values that were taken: they, and the equations of the template over them.
    // Equations over the point, which is not known here, stay as they are.
    std::vector<std::pair<size_t, dao::Variant>> withEquations(const RecordValues& record,
                                                               std::map<size_t, dao::Variant> taken) const;

  private:
    const std::vector<PromptRow>* rows(const RecordValues& record) const;
    const PromptRow* row(const RecordValues& record, size_t field) const;
    std::string feature(const RecordValues& record) const;
    void addEquations(const RecordValues& record, const std::vector<PromptRow>& rows,
                      std::map<size_t, dao::Variant>& taken) const;

    std::vector<CDaoFieldInfo> fields_;
    std::vector<SheetColumn> columns_;
    std::vector<bool> isKey_;
    int gisKey_ = -1;                                         // the place of GIS_KEY
    std::map<std::string, std::vector<PromptRow>> features_;  // by name in capitals
};

}  // namespace norvane
