#include "wire/field.h"

#include "support/test.h"

namespace {

using enum XasFieldKind;

/** Something of every kind of place: a word, bytes with padding behind them, a list, what is not used. */
struct Sample {
    std::uint32_t word;
    std::uint8_t byte;
    char text[10];
    struct Pair {
        std::uint32_t left;
        std::uint16_t right;
    } pairs[2];
    std::uint32_t unused[3];
    std::uint32_t last;
};

constexpr XasMsgGroup PAIRS = {.name = "pair", .place = XAS_PLACE(Sample, pairs), .stride = 8};
constexpr XasValueName NAMES[] = {{0, "zero"}};

constexpr XasMsgField WORD = XAS_FIELD(Sample, word, number, "a word");
constexpr XasMsgField BYTE = XAS_FIELD(Sample, byte, choice, "a choice").of(NAMES);
constexpr XasMsgField TEXT = XAS_FIELD(Sample, text, text, "a text");
constexpr XasMsgField LEFT = xasField("left", XAS_PLACE(Sample, pairs[0].left), ipv4, "left").in(PAIRS);
constexpr XasMsgField RIGHT = xasField("right", XAS_PLACE(Sample, pairs[0].right), flag, "right").in(PAIRS);
constexpr XasMsgField LAST = XAS_FIELD(Sample, last, mask, "the last one");

/** The proof of a table of Sample's fields. */
template <std::size_t N>
constexpr bool isSound(const XasMsgField (&fields)[N])
{
    return xasFieldsAreSound<Sample>(fields, {XAS_PLACE(Sample, unused)});
}

/** The table with this in the place of the word that it begins with. */
constexpr bool isSoundWith(const XasMsgField &first)
{
    return isSound({first, BYTE, TEXT, LEFT, RIGHT, LAST});
}

constexpr XasMsgField moved(XasMsgField field, XasPlace place)
{
    field.place = place;
    return field;
}

static_assert(isSoundWith(WORD));

// a field that is missing in the middle or at the end, one too many, an overlap, another order
static_assert(!isSound({WORD, BYTE, LEFT, RIGHT, LAST}));
static_assert(!isSound({WORD, BYTE, TEXT, LAST}));
static_assert(!isSound({WORD, BYTE, TEXT}));
static_assert(!isSound({WORD, BYTE, TEXT, LEFT, RIGHT, LAST, LAST}));
static_assert(!isSoundWith(moved(WORD, {122, 4})));
static_assert(!isSound({BYTE, WORD, TEXT, LEFT, RIGHT, LAST}));

// what is not used must be named
constexpr XasMsgField WHOLE[] = {WORD, BYTE, TEXT, LEFT, RIGHT, LAST};
static_assert(!xasFieldsAreSound<Sample>(WHOLE));

// a place in the header, and one that ends outside the record
static_assert(!isSoundWith(moved(WORD, {116, 4})));
struct TooLong {
    char text[XAS_PAYLOAD_SIZE + 1];
};
constexpr XasMsgField TOO_LONG[] = {XAS_FIELD(TooLong, text, text, "a text")};
static_assert(!xasFieldsAreSound<TooLong>(TOO_LONG));

// a width that is not the kind's, no name, no meaning, a choice without names, names without a choice
static_assert(!isSoundWith(moved(WORD, {120, 3})));
static_assert(!isSoundWith(xasField("", WORD.place, number, "a word")));
static_assert(!isSoundWith(xasField("word", WORD.place, number, "")));
static_assert(!isSoundWith(xasField("word", WORD.place, choice, "a word")));
static_assert(!isSoundWith(WORD.of(NAMES)));

// a member of a group that reaches into the next element
constexpr XasMsgGroup NARROW = {.name = "pair", .place = XAS_PLACE(Sample, pairs), .stride = 5};
static_assert(!isSound({WORD, BYTE, TEXT, LEFT.in(NARROW), RIGHT.in(NARROW), LAST}));

constexpr XasMsgFields SAMPLE = {.msgtype = 1, .meaning = "a sample", .fields = WHOLE};

/** The place of one member, as its name says it. */
XasPlace placeOf(std::string_view name)
{
    return xasFindField(SAMPLE, name).value().place;
}

} // namespace

TEST(FieldWidth, IsThatOfTheKind)
{
    const std::pair<XasFieldKind, std::vector<std::size_t>> WIDTHS[] = {
        {number, {1, 2, 4, 8}}, {mask, {1, 2, 4, 8}}, {flag, {1, 2, 4}}, {choice, {1, 2, 4}},
        {integer, {4}},         {ipv4, {4}},          {ipv6, {16}},      {sockaddr6, {28}},
        {ipAddr, {20}},         {hostAddr, {76}}};
    for (const auto &[kind, widths] : WIDTHS) {
        for (std::size_t width = 0; width <= 100; ++width) {
            const bool fits = std::ranges::find(widths, width) != widths.end();
            EXPECT_EQ(xasWidthFits(kind, width), fits) << static_cast<int>(kind) << ' ' << width;
        }
    }
    EXPECT_FALSE(xasWidthFits(text, 1)) << "a NUL is all that it could hold";
    EXPECT_TRUE(xasWidthFits(text, 2));
    EXPECT_TRUE(xasWidthFits(text, XAS_PAYLOAD_SIZE));
}

TEST(FieldNames, AnUnknownNameIsNotFound)
{
    for (const char *name : {"", "pair", "pair1", "pair0.left", "pair3.left", "pair1.left ", "PAIR1.left",
                             "left", "pair1..left", "words"})
        EXPECT_FALSE(xasFindField(SAMPLE, name)) << name;
}

TEST(FieldNames, AreListedInTheOrderOfTheRecordWithGroupsSpreadOut)
{
    std::vector<std::string> names;
    for (const XasMsgFieldAt &where : xasListFields(SAMPLE))
        names.push_back(where.name);
    EXPECT_EQ(names, (std::vector<std::string>{"word", "byte", "text", "pair1.left", "pair1.right",
                                               "pair2.left", "pair2.right", "last"}));
    EXPECT_TRUE(xasListFields({}).empty());
}

TEST(FieldNames, LeadToTheFieldsOwnPlace)
{
    EXPECT_EQ(placeOf("byte").offset, 124U);
    EXPECT_EQ(placeOf("text").width, 10U);
    EXPECT_EQ(placeOf("pair1.right").offset, 140U);
    EXPECT_EQ(placeOf("pair2.right").offset, 148U);
    EXPECT_EQ(placeOf("pair2.right").width, 2U);
    EXPECT_EQ(xasFindField(SAMPLE, "pair2.left")->element, 1U);
    EXPECT_EQ(xasElementPlace(PAIRS, 1).offset, 144U);
    EXPECT_EQ(xasElementPlace(PAIRS, 1).width, 8U);
}

TEST(FieldNames, AGroupOfSingleValuesIsNamedByItsNumbersAlone)
{
    static constexpr XasMsgGroup SLAVES = {.name = "slave", .place = {120, 12}, .stride = 4};
    static constexpr XasMsgField FIELDS[] = {xasField("", {120, 4}, ipv4, "a slave").in(SLAVES)};
    const auto list = xasListFields({.fields = FIELDS});
    ASSERT_EQ(list.size(), 3U);
    EXPECT_EQ(list[2].name, "slave3");
    EXPECT_EQ(list[2].place.offset, 128U);
}

TEST(FieldUse, AnAllZeroElementIsUnusedUnlessItsGroupIsFixed)
{
    static constexpr XasMsgGroup LOOSE = {.name = "a", .place = {120, 16}, .stride = 8};
    static constexpr XasMsgGroup FIXED = {.name = "b", .place = {136, 16}, .stride = 8, .fixed = true};
    static constexpr XasMsgField FIELDS[] = {xasField("x", {124, 4}, number, "x").in(LOOSE),
                                             xasField("x", {136, 4}, number, "x").in(FIXED),
                                             xasField("y", {152, 4}, number, "y")};
    const XasMsgFields fields = {.fields = FIELDS};
    std::vector<std::byte> record(XAS_MESSAGE_SIZE);
    record[128] = std::byte{1}; // the first byte of a2, in front of a2.x
    EXPECT_FALSE(xasIsUsed(record, *xasFindField(fields, "a1.x")));
    EXPECT_TRUE(xasIsUsed(record, *xasFindField(fields, "a2.x")));
    EXPECT_TRUE(xasIsUsed(record, *xasFindField(fields, "b1.x")));
    EXPECT_TRUE(xasIsUsed(record, *xasFindField(fields, "y")));
}
