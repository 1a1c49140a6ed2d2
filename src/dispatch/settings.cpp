#include "dispatch/settings.h"

#include "core/file.h"
#include "dispatch/settings_list.h"

#include <algorithm>
#include <array>
#include <cstdlib>

namespace {

constexpr std::size_t TEXT_COUNT = [] {
    std::ptrdiff_t count = 0;
    for (const XasListedSetting &listed : XAS_SETTINGS_LIST)
        count += std::ranges::count_if(listed.message->fields, xasHoldsText);
    return static_cast<std::size_t>(count);
}();

/** The texts of all messages, in the order of the list. */
constexpr auto TEXTS = [] {
    std::array<XasTextField, TEXT_COUNT> texts{};
    auto next = texts.begin();
    for (const XasListedSetting &listed : XAS_SETTINGS_LIST) {
        for (const XasMsgField &field : listed.message->fields) {
            if (xasHoldsText(field))
                *next++ = xasTextFieldOf(field);
        }
    }
    return texts;
}();

/** What the daemon needs of the list. */
constexpr auto SETTINGS = [] {
    std::array<XasSetting, std::size(XAS_SETTINGS_LIST)> settings{};
    std::size_t firstText = 0;
    for (std::size_t i = 0; i < settings.size(); ++i) {
        settings[i] = XAS_SETTINGS_LIST[i].setting;
        settings[i].msgtype = static_cast<XasMsgType>(XAS_SETTINGS_LIST[i].message->msgtype);
        settings[i].answered = XAS_SETTINGS_LIST[i].message->answered;
        const auto texts = std::ranges::count_if(XAS_SETTINGS_LIST[i].message->fields, xasHoldsText);
        settings[i].texts = std::span{TEXTS}.subspan(firstText, static_cast<std::size_t>(texts));
        firstText += settings[i].texts.size();
    }
    return settings;
}();

using xasApplicationFields::APPLICATIONS;

/** The one that not every model has. */
constexpr std::uint32_t XPB_INDEX = 4;
static_assert(APPLICATIONS[XPB_INDEX].name == "xpb");

/** Inclusive ranges of the models that have the device of "xpb". */
struct ModelRange {
    std::uint8_t first;
    std::uint8_t last;
};
constexpr std::array XPB_MODELS = {ModelRange{13, 16}, ModelRange{29, 32}, ModelRange{45, 48},
                                   ModelRange{61, 64}, ModelRange{77, 80}, ModelRange{93, 97}};

/** The appliance's model, from the first line of its description that has one; false when none has. */
bool readModel(std::uint8_t &model)
{
    constexpr std::string_view MODEL_KEY = "model=";
    const XasFile info = xasOpenFile("/etc/qvtx/info");
    std::array<char, 100> line{};
    while (info && std::fgets(line.data(), line.size(), info.get()) != nullptr) {
        const std::string_view text = line.data();
        const std::size_t key = text.find(MODEL_KEY);
        if (key != std::string_view::npos) {
            model = static_cast<std::uint8_t>(std::atoi(line.data() + key + MODEL_KEY.size()));
            return true;
        }
    }
    return false;
}

bool modelHasXpb()
{
    std::uint8_t model = 0;
    return readModel(model) && std::ranges::any_of(XPB_MODELS, [&](const ModelRange &range) {
               return model >= range.first && model <= range.last;
           });
}

} // namespace

std::span<const XasSetting> xasSettings()
{
    return SETTINGS;
}

const XasSetting *xasFindSetting(std::uint32_t msgtype)
{
    const auto *const found =
        std::ranges::find_if(SETTINGS, [&](const XasSetting &row) { return row.msgtype == msgtype; });
    return found != SETTINGS.end() ? found : nullptr;
}

std::string_view xasApplicationName(const XasSetting &setting, const XasMessage &msg)
{
    if (!setting.application.empty())
        return setting.application;
    const std::uint32_t index = xasPayloadWord<0>(msg);
    return index < std::size(APPLICATIONS) ? APPLICATIONS[index].name : "INVALID_APP";
}

bool xasIsStartWanted(const XasSetting &setting, const XasMessage &msg)
{
    using enum XasStartRule;
    const bool word0Set = xasPayloadWord<0>(msg) != 0;
    const bool word1Set = xasPayloadWord<1>(msg) != 0;
    switch (setting.start) {
    case word0:
        return word0Set;
    case word0or1:
        return word0Set || word1Set;
    case word1AndModel:
        return word1Set && (xasPayloadWord<0>(msg) != XPB_INDEX || modelHasXpb());
    case always:
        break;
    }
    return true;
}
