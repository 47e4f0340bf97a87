// Trees and pictures on their way to another process and back.

#include <gtest/gtest.h>

#include <map>

#include "wire/Channel.h"
#include "wire/ViewCodec.h"

namespace quibbits::views {
namespace {

Image checked(int width, int height, Argb color) {
    std::vector<Argb> pixels(static_cast<std::size_t>(width * height), color);
    pixels[0] = 0xffffffff;
    return Image::fromArgb(width, height, std::move(pixels));
}

/// One of every kind, with something in every field.
View everything() {
    const Image image = checked(3, 2, 0xff336699);
    const Views leaves{
        {.content = Text{"T", TextStyle::caption, true}},
        {.content = Fact{"bolt", "Title", "Détail", "9", true}},
        {.content = Picture{image, "heart", 80, true, true}},
        {.content = Meter{"M", "1/2", 0.5, Color::rgb(0x112233)}},
        {.content = Toggle{"T", "D", true}, .id = "toggle", .enabled = false},
        {.content = Stepper{"S", 60, 15, 180, 15}, .id = "stepper"},
        {.content = Picker{"P", {{"a", "A"}, {"b", "B"}}, "b", true}, .id = "picker"},
        {.content = Button{"B", "trash", ButtonRole::destructive}, .id = "button"},
        {.content = Chooser{"C", {{"x", "X", "icon"}}}, .id = "chooser"},
        {.content = Link{"L", "https://example.org"}},
        {.content = Application{"A", "icon"}},
        {.content = Alert{"A", "M", "B", true}, .id = "alert"},
        {.content = Dots{8, 3}},
        {.content =
             Preview{
                 {120, 110}, {1, 2, 3, 4}, {image, checked(1, 1, 0)}, {{1, {0, 0, 0.5, 1}}}, 0.05}},
        {.content = Spacer{}, .opacity = 0.5},
    };
    View tree{.content = Split{"row"}, .id = "split"};
    tree.children = {
        {.content = SidebarRow{"Row", "gear", image, true}, .id = "row"},
        {.content = TabView{2},
         .children = {{.content = Tab{"Tab", "film"},
                       .children = {{.content = Form{},
                                     .children = {{.content = Section{"H", "F"},
                                                   .children = leaves}}}}}}},
        {.content = Paged{},
         .children = {{.content = Column{}},
                      {.content = Line{}},
                      {.content = Grid{140}},
                      {.content = Disclosure{"More"}},
                      {.content = Card{true}, .id = "card"}}},
    };
    return tree;
}

TEST(ATree, ArrivesAsItWasSent) {
    std::map<std::uint64_t, Image> pictures;
    const View sent = everything();
    const Json json = write(sent, [&](const Image& image) {
        const auto number = pictureNumber(image);
        pictures.emplace(number, image);
        return number;
    });
    const auto text = Json::parse(json.dump());
    ASSERT_TRUE(text);
    const auto arrived = readView(*text.value, [&](std::uint64_t n) { return pictures[n]; });
    ASSERT_TRUE(arrived);
    EXPECT_EQ(*arrived, sent);
}

TEST(ABrokenTree, IsReadAsFarAsItMakesSense) {
    const auto read = [](const char* json) {
        return readView(*Json::parse(json).value, [](std::uint64_t) { return Image{}; });
    };
    EXPECT_EQ(read("[]"), std::nullopt);
    EXPECT_EQ(read("{}"), std::nullopt);
    const auto odd = read(R"({"content": {"kind": "toggle", "title": 7, "isOn": true},
                              "id": [], "children": [3, {"content": {"kind": "martian"}}]})");
    ASSERT_TRUE(odd);
    EXPECT_EQ(*odd->as<Toggle>(), (Toggle{.isOn = true}));
    EXPECT_EQ(odd->children.size(), 2u);
    const auto wild = read(R"({"content": {"kind": "text", "style": 99}})");
    EXPECT_EQ(wild->as<Text>()->style, TextStyle::body);
}

TEST(AnAction, CarriesEveryKindOfValue) {
    for (const Action::Value& value :
         {Action::Value{}, Action::Value{true}, Action::Value{std::int64_t{-5}},
          Action::Value{std::string("wörd")}, Action::Value{std::vector<std::string>{"a", "b"}}}) {
        const Action sent{.id = "x", .value = value};
        EXPECT_EQ(readAction(*Json::parse(write(sent).dump()).value), sent);
    }
    EXPECT_EQ(readAction(Json::Object{}), std::nullopt);
}

TEST(Pictures, AreNumberedByTheirPixels) {
    EXPECT_EQ(pictureNumber({}), 0u);
    EXPECT_EQ(pictureNumber(checked(2, 2, 1)), pictureNumber(checked(2, 2, 1)));
    EXPECT_NE(pictureNumber(checked(2, 2, 1)), pictureNumber(checked(2, 2, 2)));
    EXPECT_NE(pictureNumber(checked(1, 4, 1)), pictureNumber(checked(4, 1, 1)));
}

TEST(TheChannel, PutsPiecesTogether) {
    const std::string bytes =
        packed("{\"a\":1}") + packed(NumberedPicture{7, checked(2, 3, 5)}) + packed("");
    Unpacker unpacker;
    std::vector<Message> messages;
    for (const char byte : bytes) {
        ASSERT_TRUE(unpacker.add(&byte, 1));
        while (auto message = unpacker.next()) messages.push_back(*std::move(message));
    }
    ASSERT_EQ(messages.size(), 3u);
    EXPECT_EQ(std::get<std::string>(messages[0]), "{\"a\":1}");
    const auto& picture = std::get<NumberedPicture>(messages[1]);
    EXPECT_EQ(picture.number, 7u);
    EXPECT_EQ(pictureNumber(picture.image), pictureNumber(checked(2, 3, 5)));
}

TEST(TheChannel, EndsAtNonsense) {
    const auto survives = [](std::string bytes) {
        Unpacker unpacker;
        return unpacker.add(bytes.data(), bytes.size());
    };
    EXPECT_FALSE(survives("GET / HTTP/1.1\r\n"));
    std::string huge = packed("x");
    huge[7] = '\x7f';  // the length's highest byte
    EXPECT_FALSE(survives(huge));
    std::string wide = packed(NumberedPicture{1, checked(2, 2, 0)});
    wide[16] = 9;  // a width that the pixels do not fill
    EXPECT_FALSE(survives(wide));
}

}  // namespace
}  // namespace quibbits::views
