// The properties of a table and its columns (required, default value, validation rule ...), as they stand in
// the catalogue. What is not known is kept, in its order.
#pragma once

#include <string>
#include <vector>

#include "platform/dao/jet/table_definition.h"

namespace jet {

struct Property {
    std::string name;
    Type type = Type::kText;
    bool ofEngine = false;  // known to the database engine, not only to a program above it
    Bytes value;
};

class Properties {
  public:
    Properties() = default;
    // Reads the stored form; an empty one has no properties.
    Properties(const TextCodec& text, ByteView stored);
    Bytes stored(const Format& format, const TextCodec& text) const;

    // owner: the name of a column; "" for the table itself.
    const Property* find(std::string_view owner, std::string_view name) const;
    void set(const std::string& owner, Property property);
    void erase(std::string_view owner, std::string_view name);
    void eraseOwner(std::string_view owner);

    bool isTrue(std::string_view owner, std::string_view name, bool otherwise) const;
    std::string text(const TextCodec& codec, std::string_view owner, std::string_view name) const;
    void setFlag(const std::string& owner, const std::string& name, bool value);
    // An empty text takes the property away.
    void setText(const TextCodec& codec, const std::string& owner, const std::string& name,
                 const std::string& text);

  private:
    struct Group {
        uint16_t kind;  // 0 the table, 1 a column; others are kept
        std::string owner;
        std::vector<Property> properties;
    };
    Group* group(std::string_view owner);
    const Group* group(std::string_view owner) const;

    std::vector<std::string> names_;
    std::vector<Group> groups_;
};

}  // namespace jet
