#include "xms/settings_file.h"

#include "msg/fields.h"
#include "msg/type_names.h"
#include "xms/setting.h"

#include <algorithm>
#include <iterator>
#include <set>
#include <yaml-cpp/yaml.h>

namespace {

/** A file of every setting of an appliance has some thousand bytes. */
constexpr std::size_t FILE_MAX = 4U << 20;

std::span<const std::byte> bytesOf(const XasMessage &record)
{
    return std::as_bytes(std::span{&record, 1});
}

// reading

struct Reader {
    const std::string &name;
    std::vector<XmsFileSetting> &settings;
    std::vector<std::string> &complaints;
};

/** Lines are counted from 1. */
std::size_t lineOf(const YAML::Node &node)
{
    return static_cast<std::size_t>(std::max(node.Mark().line, -1) + 1);
}

void complain(const Reader &reader, std::size_t line, const std::string &text)
{
    reader.complaints.push_back(reader.name + ":" + std::to_string(line) + ": " + text);
}

std::string scalarText(const YAML::Node &node)
{
    if (node.Tag() != "tag:yaml.org,2002:binary")
        return node.Scalar();
    const std::vector<unsigned char> bytes = YAML::DecodeBase64(node.Scalar());
    return {bytes.begin(), bytes.end()};
}

/** The fields of one mapping, and of the mappings of its elements one level below. */
void readFields(const Reader &reader, const YAML::Node &node, const std::string &prefix,
                XmsFileSetting &setting)
{
    for (const auto &entry : node) {
        const YAML::Node &value = entry.second;
        const std::string field = prefix + (entry.first.IsScalar() ? entry.first.Scalar() : "");
        if (field == prefix)
            complain(reader, lineOf(entry.first), setting.type + ": this is no name of a field");
        else if (value.IsScalar())
            setting.fields.push_back({{field, scalarText(value)}, lineOf(entry.first)});
        else if (value.IsMap() && prefix.empty())
            readFields(reader, value, field + ".", setting);
        else
            complain(reader, lineOf(entry.first), setting.type + ": " + field + " has no value");
    }
}

void requireDistinctFields(const Reader &reader, const XmsFileSetting &setting)
{
    std::set<std::string> names;
    for (const XmsFileField &field : setting.fields) {
        if (!names.insert(field.assignment.name).second)
            complain(reader, field.line, setting.type + ": " + field.assignment.name + " is there twice");
    }
}

void readSetting(const Reader &reader, const std::string &type, std::size_t line, const YAML::Node &node)
{
    XmsFileSetting setting{type, line, {}};
    if (!node.IsMap() && !node.IsNull())
        return complain(reader, line, type + ": its fields are missing, each with its value");
    if (node.IsMap())
        readFields(reader, node, "", setting);
    requireDistinctFields(reader, setting);
    reader.settings.push_back(std::move(setting));
}

void readDocument(const Reader &reader, const YAML::Node &document)
{
    if (!document.IsMap())
        return complain(reader, 1, "no message types with their fields are here");
    std::set<std::string> types;
    for (const auto &entry : document) {
        const std::string type = entry.first.IsScalar() ? entry.first.Scalar() : "";
        const std::size_t line = lineOf(entry.first);
        if (!types.insert(type).second)
            complain(reader, line, type + " is there twice; several of a type are a list");
        else if (entry.second.IsSequence())
            for (const YAML::Node &element : entry.second)
                readSetting(reader, type, lineOf(element), element);
        else
            readSetting(reader, type, line, entry.second);
    }
}

// writing

/** True for whole characters of UTF-8 alone. */
bool isUtf8(std::string_view text)
{
    return XmsJson::parse(XmsJson(text).dump(-1, ' ', true, XmsJson::error_handler_t::replace))
               .get<std::string>() == text;
}

void emitValue(YAML::Emitter &out, XasFieldKind kind, const std::string &text)
{
    if (kind == XasFieldKind::text && isUtf8(text))
        out << YAML::DoubleQuoted << text;
    else if (isUtf8(text))
        out << text;
    else
        out << YAML::Binary(reinterpret_cast<const unsigned char *>(text.data()), text.size());
}

/** The part of a name in front of its dot; empty when it has none. */
std::string elementOf(const XasMsgFieldAt &where)
{
    const std::size_t dot = where.name.find('.');
    return dot == std::string::npos ? "" : where.name.substr(0, dot);
}

void emitSetting(YAML::Emitter &out, const XasMessage &record)
{
    out << YAML::BeginMap;
    std::string open;
    for (const XasMsgFieldAt &where : xmsFieldsToWrite(record)) {
        const std::string element = elementOf(where);
        if (element != open && !open.empty())
            out << YAML::EndMap;
        if (element != open && !element.empty())
            out << YAML::Key << element << YAML::Value << YAML::BeginMap;
        open = element;
        out << YAML::Key << (element.empty() ? where.name : where.name.substr(element.size() + 1))
            << YAML::Value;
        emitValue(out, where.field->kind, msgValueText(bytesOf(record), where));
    }
    if (!open.empty())
        out << YAML::EndMap;
    out << YAML::EndMap;
}

/** The records that are described, those of a type together, in the order of the types. */
std::vector<std::pair<std::uint32_t, std::vector<XasMessage>>> byType(const std::vector<XasMessage> &records)
{
    std::vector<std::pair<std::uint32_t, std::vector<XasMessage>>> all;
    for (const XasMessage &record : records) {
        if (msgFieldsOf(record.xH.msgtype) == nullptr)
            continue;
        auto found = std::ranges::find(all, record.xH.msgtype, [](const auto &each) { return each.first; });
        if (found == all.end())
            found = all.insert(all.end(), {record.xH.msgtype, {}});
        found->second.push_back(record);
    }
    std::ranges::sort(all, {}, [](const auto &each) { return each.first; });
    return all;
}

bool areCountsImplied(const XasMessage &record, const std::vector<XasMsgFieldAt> &fields)
{
    std::vector<XmsAssignment> assignments;
    assignments.reserve(fields.size());
    for (const XasMsgFieldAt &where : fields)
        assignments.push_back({where.name, msgValueText(bytesOf(record), where)});
    XasMessage again = xmsDefaultRecord(record.xH.msgtype);
    xmsAssign(again, assignments, XasValueCheck::anyThatFits);
    return xmsFieldsJson(again) == xmsFieldsJson(record);
}

} // namespace

std::vector<XmsFileSetting> xmsReadSettings(std::istream &file, const std::string &name,
                                            std::vector<std::string> &complaints)
{
    std::vector<XmsFileSetting> settings;
    const Reader reader{name, settings, complaints};
    const std::string text{std::istreambuf_iterator<char>{file}, {}};
    if (text.size() > FILE_MAX) {
        complain(reader, 1, "this is too long for a file of settings");
        return settings;
    }
    try {
        const std::vector<YAML::Node> documents = YAML::LoadAll(text);
        readDocument(reader, documents.size() == 1 ? documents.front() : YAML::Node{});
    } catch (const YAML::Exception &error) {
        complain(reader, static_cast<std::size_t>(std::max(error.mark.line, 0)) + 1, error.msg);
    }
    return settings;
}

std::vector<XasMsgFieldAt> xmsFieldsToWrite(const XasMessage &record)
{
    const XasMsgFields *fields = msgFieldsOf(record.xH.msgtype);
    std::vector<XasMsgFieldAt> all =
        fields == nullptr ? std::vector<XasMsgFieldAt>{} : xasListFields(*fields);
    std::erase_if(all, [&](const XasMsgFieldAt &where) {
        const bool isOfUsers = record.xH.msgtype == XMSG_LOCALUSERS &&
                               (where.name == "users_included" || where.name == "num_users");
        return isOfUsers || !xasIsUsed(bytesOf(record), where);
    });
    std::vector<XasMsgFieldAt> values = all;
    std::erase_if(values, [](const XasMsgFieldAt &where) { return where.field->counts != nullptr; });
    return values.size() != all.size() && areCountsImplied(record, values) ? values : all;
}

std::string xmsSettingsHead(bool withSecrets)
{
    return std::string{"# Settings of an appliance, for `xms apply`.\n"} +
           (withSecrets
                ? "# With secrets.\n"
                : "# Secrets are masked: where this is applied, the stored ones stay (--secrets writes them).\n");
}

std::string xmsSettingsYaml(const std::vector<XasMessage> &records)
{
    YAML::Emitter out;
    out << YAML::BeginMap;
    for (const auto &[msgtype, all] : byType(records)) {
        out << YAML::Key << msgShortName(msgtype) << YAML::Value;
        if (all.size() > 1)
            out << YAML::BeginSeq;
        for (const XasMessage &record : all)
            emitSetting(out, record);
        if (all.size() > 1)
            out << YAML::EndSeq;
    }
    out << YAML::EndMap;
    std::string text = std::string{out.c_str()} + "\n";
    for (const XasMessage &record : records) {
        if (msgFieldsOf(record.xH.msgtype) == nullptr)
            text += "# " + msgShortName(record.xH.msgtype) + " is stored, but its fields are not described\n";
    }
    return text;
}

XmsJson xmsSettingsJson(const std::vector<XasMessage> &records)
{
    XmsJson json = XmsJson::object();
    for (const auto &[msgtype, all] : byType(records)) {
        XmsJson list = XmsJson::array();
        for (const XasMessage &record : all) {
            const XmsJson fields = xmsFieldsJson(record);
            XmsJson written = XmsJson::object();
            for (const XasMsgFieldAt &where : xmsFieldsToWrite(record))
                written[where.name] = fields.at(where.name);
            list.push_back(std::move(written));
        }
        json[msgShortName(msgtype)] = list.size() == 1 ? list.front() : list;
    }
    return json;
}
