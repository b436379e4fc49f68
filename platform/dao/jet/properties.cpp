#include "platform/dao/jet/properties.h"

#include <algorithm>
#include <utility>

#include "platform/text/text.h"

namespace jet {
namespace {

constexpr std::string_view kMagic3("KKD\0", 4), kMagic4("MR2\0", 4);
constexpr uint16_t kNames = 0x80, kOfTable = 0, kOfColumn = 1;
constexpr size_t kChunkHead = 6, kRecordHead = 8;

}  // namespace

Properties::Properties(const TextCodec& text, ByteView stored) {
    if (stored.empty()) return;
    std::string_view magic = stored.part(0, 4).text();
    if (magic != kMagic3 && magic != kMagic4) damaged("the properties of a table cannot be read");
    for (size_t at = kMagic3.size(); at < stored.size();) {
        size_t length = stored.u32(at);
        if (length < kChunkHead) damaged("the properties of a table cannot be read");
        ByteView chunk = stored.part(at, length);
        uint16_t kind = chunk.u16(4);
        at += length;
        if (kind == kNames) {
            for (size_t i = kChunkHead; i < length;) {
                size_t size = chunk.u16(i);
                names_.push_back(text.decode(chunk.part(i + 2, size)));
                i += 2 + size;
            }
            continue;
        }
        size_t begin = kChunkHead + chunk.u32(kChunkHead);
        Group group{kind, text.decode(chunk.part(kChunkHead + 6, chunk.u16(kChunkHead + 4))), {}};
        if (begin < kChunkHead + 6) damaged("the properties of a table cannot be read");
        for (size_t i = begin; i < length;) {
            size_t size = chunk.u16(i);
            if (size < kRecordHead) damaged("the properties of a table cannot be read");
            ByteView record = chunk.part(i, size);
            size_t name = record.u16(4);
            if (name >= names_.size()) damaged("a property has no name");
            group.properties.push_back({names_[name], static_cast<Type>(record.u8(3)), record.u8(2) != 0,
                                        record.part(kRecordHead, record.u16(6)).copy()});
            i += size;
        }
        groups_.push_back(std::move(group));
    }
}

Bytes Properties::stored(const Format& format, const TextCodec& text) const {
    std::vector<std::string> names = names_;
    auto numberOf = [&](const std::string& name) {
        auto it = std::find(names.begin(), names.end(), name);
        if (it == names.end()) it = names.insert(names.end(), name);
        return static_cast<uint16_t>(it - names.begin());
    };
    ByteWriter groups;
    for (const Group& group : groups_) {
        ByteWriter body;
        Bytes owner = text.encode(group.owner);
        body.u32(static_cast<uint32_t>(6 + owner.size()));
        body.u16(static_cast<uint16_t>(owner.size()));
        body.put(owner);
        for (const Property& property : group.properties) {
            body.u16(static_cast<uint16_t>(kRecordHead + property.value.size()));
            body.u8(property.ofEngine);
            body.u8(static_cast<uint8_t>(property.type));
            body.u16(numberOf(property.name));
            body.u16(static_cast<uint16_t>(property.value.size()));
            body.put(property.value);
        }
        groups.u32(static_cast<uint32_t>(kChunkHead + body.bytes.size()));
        groups.u16(group.kind);
        groups.put(body.bytes);
    }
    ByteWriter pool;
    for (const std::string& name : names) {
        Bytes bytes = text.encode(name);
        pool.u16(static_cast<uint16_t>(bytes.size()));
        pool.put(bytes);
    }
    ByteWriter out;
    out.put(ByteView(format.unicode ? kMagic4 : kMagic3));
    out.u32(static_cast<uint32_t>(kChunkHead + pool.bytes.size()));
    out.u16(kNames);
    out.put(pool.bytes);
    out.put(groups.bytes);
    return std::move(out.bytes);
}

const Properties::Group* Properties::group(std::string_view owner) const {
    for (const Group& group : groups_)
        if ((group.kind == kOfTable && owner.empty()) ||
            (group.kind == kOfColumn && !owner.empty() && text::equalNoCase(group.owner, owner)))
            return &group;
    return nullptr;
}

Properties::Group* Properties::group(std::string_view owner) {
    return const_cast<Group*>(std::as_const(*this).group(owner));
}

const Property* Properties::find(std::string_view owner, std::string_view name) const {
    const Group* group = this->group(owner);
    if (!group) return nullptr;
    for (const Property& property : group->properties)
        if (text::equalNoCase(property.name, name)) return &property;
    return nullptr;
}

void Properties::set(const std::string& owner, Property property) {
    if (const Property* old = find(owner, property.name)) {
        *const_cast<Property*>(old) = std::move(property);
        return;
    }
    Group* group = this->group(owner);
    if (!group) {
        groups_.push_back({owner.empty() ? kOfTable : kOfColumn, owner, {}});
        group = &groups_.back();
    }
    group->properties.push_back(std::move(property));
}

void Properties::erase(std::string_view owner, std::string_view name) {
    if (Group* group = this->group(owner))
        std::erase_if(group->properties, [&](const Property& p) { return text::equalNoCase(p.name, name); });
}

void Properties::eraseOwner(std::string_view owner) {
    std::erase_if(groups_,
                  [&](const Group& g) { return g.kind == kOfColumn && text::equalNoCase(g.owner, owner); });
}

bool Properties::isTrue(std::string_view owner, std::string_view name, bool otherwise) const {
    const Property* property = find(owner, name);
    return property && !property->value.empty() ? property->value[0] != 0 : otherwise;
}

std::string Properties::text(const TextCodec& codec, std::string_view owner, std::string_view name) const {
    const Property* property = find(owner, name);
    bool isText = property && (property->type == Type::kText || property->type == Type::kMemo);
    return isText ? codec.decode(property->value) : "";
}

void Properties::setFlag(const std::string& owner, const std::string& name, bool value) {
    set(owner, {name, Type::kBoolean, true, {static_cast<uint8_t>(value)}});
}

void Properties::setText(const TextCodec& codec, const std::string& owner, const std::string& name,
                         const std::string& text) {
    if (text.empty()) return erase(owner, name);
    set(owner, {name, Type::kMemo, true, codec.encode(text)});
}

}  // namespace jet
