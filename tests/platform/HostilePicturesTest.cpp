#include <QByteArray>
#include <QGuiApplication>

#include "platform/PictureFormat.h"
#include "platform/qt/GifFile.h"
#include "platform/qt/PngFile.h"
#include "platform/qt/QtPictureLoader.h"
#include "support/PictureBytes.h"
#include "support/PictureData.h"

// Files of a few bytes to a few kilobytes that would hold the program up for minutes or for ever, or take all
// memory, if they reached the decoder that would take them. Each must be refused for a reason.

namespace tessaloom::testing {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes FromText(std::string_view text) { return {text.begin(), text.end()}; }

std::string Times(int count, std::string_view text) {
    std::string all;
    for (int i = 0; i < count; ++i) all += text;
    return all;
}

/// An animation that repeats nothing two thousand million times before its first picture.
Bytes EndlessMng() {
    return PictureBytes("\x8AMNG\r\n\x1A\n")
        .Chunk("MHDR",
               PictureBytes().Big(1, 4).Big(1, 4).Big(1000, 4).Big(0, 4).Big(0, 4).Big(0, 4).Big(0x247, 4))
        .Chunk("LOOP", PictureBytes().Big(0, 1).Big(0x7FFFFFFF, 4))
        .Chunk("ENDL", PictureBytes().Big(0, 1))
        .Chunk("MEND")
        .Bytes();
}

/// 18 bytes of header, then black run lengths.
Bytes Targa() {
    return PictureBytes()
        .Little(0, 1)
        .Little(0, 1)
        .Little(10, 1)
        .Little(0, 5)
        .Little(0, 4)
        .Little(60000, 2)
        .Little(60000, 2)
        .Little(32, 1)
        .Little(8, 1)
        .Little(0xFF, 5)
        .Bytes();
}

TEST(HostilePictures, OfOtherFormatsReachNoDecoder) {
    // clang-format off
    const std::pair<const char*, Bytes> files[] = {
        {"MNG",    EndlessMng()                                                                             },
        {"JNG",    PictureBytes("\x8BJNG\r\n\x1A\n").Big(0, 8).Bytes()                                      },
        {"TGA",    Targa()                                                                                  },
        {"ICNS",   PictureBytes("icns").Big(0xFFFFFFFF, 4).Text("ic09").Big(0xFFFFFFF0, 4).Bytes()          },
        {"WBMP",   PictureBytes().Big(0, 2).Big(0xFFFF7F, 3).Big(0xFFFF7F, 3).Bytes()                       },
        {"XBM",    FromText("#define a_width 8\n#define a_height 1\nstatic char a_bits[] = {\n 0xff};\n")  },
        {"XPM",    FromText("/* XPM */\nstatic char * a[] = {\n\"1 1 1 1\",\n\"a c #FF0000\",\n\"a\"};\n")},
        {"JP2",    PictureBytes().Big(12, 4).Text("jP  \r\n\x87\n").Bytes()                                 },
        {"DDS",    PictureBytes("DDS ").Little(124, 4).Bytes()                                              },
        {"SVGZ",   PictureBytes().Big(0x1F8B0800, 4).Big(0, 8).Bytes()                                      },
        {"page",   FromText("<!DOCTYPE html><html><svg/></html>")                                           },
        {"feed",   FromText("<?xml version='1.0'?><rss><svg/></rss>")                                       },
        {"UTF-16", PictureBytes("\xFF\xFE<").Big(0, 1).Text("s").Big(0, 1).Bytes()                          },
        {"text",   FromText("no picture")                                                                   },
        {"none",   {}                                                                                       },
    };
    // clang-format on
    QtPictureLoader loader;
    for (const auto& [name, file] : files) {
        SCOPED_TRACE(name);
        EXPECT_EQ(loader.Load(file).refusal, PictureRefusal::NotSupported);
        EXPECT_FALSE(loader.Header(file));
    }
}

/// Whether one of the toolkit's plug-ins has been loaded into this process.
bool IsLoaded(std::string_view plugin) {
    std::ifstream maps("/proc/self/maps");
    const std::string text{std::istreambuf_iterator<char>(maps), {}};
    return text.find(plugin) != std::string::npos;
}

TEST(HostilePictures, MeetOnlyThePlugInOfTheirFormat) {
    QtPictureLoader loader;
    for (const char* name : {"quarters.png", "quarters.gif", "quarters.bmp", "quarters.ico", "quarters.ppm",
                             "quarters.tif", "quarters.webp", "cmyk.jpg"}) {
        EXPECT_TRUE(loader.Load(PictureData(name))) << name;
        EXPECT_TRUE(loader.Header(PictureData(name))) << name;
    }
    loader.Load(EndlessMng());
    for (const char* plugin : {"libqgif", "libqtiff", "libqwebp"}) EXPECT_TRUE(IsLoaded(plugin)) << plugin;
    for (const char* plugin : {"libqmng", "libqtga", "libqicns", "libqwbmp"})
        EXPECT_FALSE(IsLoaded(plugin)) << plugin;
}

TEST(HostilePictures, AreToldByContentFromTheirFirstBytes) {
    // clang-format off
    const std::pair<const char*, PictureFormat> files[] = {
        {"quarters.png", PictureFormat::Png},       {"animated.gif", PictureFormat::Gif},
        {"rle.bmp", PictureFormat::Bmp},            {"quarters.ico", PictureFormat::Icon},
        {"quarters.ppm", PictureFormat::Portable},  {"quarters.tif", PictureFormat::Tiff},
        {"quarters.webp", PictureFormat::WebP},     {"odd.jpg", PictureFormat::Jpeg},
        {"mixed.svg", PictureFormat::Svg},
    };
    // clang-format on
    for (const auto& [name, format] : files) {
        Bytes file = PictureData(name);
        file.resize(std::min(file.size(), PictureSignatureBytes));
        EXPECT_EQ(PictureFormatOf(file), format) << name;
    }
    EXPECT_EQ(PictureFormatOf(PictureData("quarters.tga")), std::nullopt);
}

PictureBytes Packed(int size) {
    const QByteArray packed = qCompress(QByteArray(size, 'a'), 9).mid(4);
    return PictureBytes({packed.constData(), static_cast<std::size_t>(packed.size())});
}

/// A picture of one pixel, with texts that unpack to `size` bytes each.
Bytes PngWithTexts(int texts, int size) {
    PictureBytes content("k");
    content.Big(0, 2).Append(Packed(size).Bytes());
    PictureBytes file("\x89PNG\r\n\x1A\n");
    file.Chunk("IHDR", PictureBytes().Big(1, 4).Big(1, 4).Big(8, 1).Big(2, 1).Big(0, 3));
    for (int i = 0; i < texts; ++i) file.Chunk("zTXt", content).Chunk("iTXt", content).Chunk("iCCP", content);
    const QByteArray pixel = qCompress(QByteArray("\0\x11\x22\x33", 4)).mid(4);
    file.Chunk("IDAT", PictureBytes({pixel.constData(), static_cast<std::size_t>(pixel.size())}));
    return file.Chunk("zTXt", content).Chunk("IEND").Bytes();
}

TEST(HostilePictures, OfPngLoseWhatUnpacksToGigabytes) {
    // 6 GB: the toolkit unpacks texts of up to 8 MB, a thousand of them.
    const Bytes file = PngWithTexts(250, 7'900'000);
    const auto essential = EssentialPng(file);
    ASSERT_TRUE(essential);
    EXPECT_EQ(*essential, *EssentialPng(PngWithTexts(0, 1)));
    EXPECT_LT(essential->size(), 100U);
    const LoadedPicture picture = QtPictureLoader().Load(file);
    ASSERT_EQ(picture.width, 1);
    EXPECT_EQ(picture.pixels[0], 0x33);
    const auto header = QtPictureLoader().Header(file);
    ASSERT_TRUE(header);
    EXPECT_EQ(header->width, 1);
}

TEST(HostilePictures, WithinIconsAreTakenAsFilesOfTheirOwn) {
    const auto icon = [](const Bytes& png) {
        return PictureBytes()
            .Little(0, 2)
            .Little(1, 2)
            .Little(1, 2)
            .Little(0, 4)
            .Little(1, 2)
            .Little(32, 2)
            .Little(png.size(), 4)
            .Little(22, 4)
            .Append(png)
            .Bytes();
    };
    const LoadedPicture picture = QtPictureLoader().Load(icon(PngWithTexts(250, 7'900'000)));
    EXPECT_EQ(picture.width, 1);
    Bytes damaged = PngWithTexts(0, 1);
    damaged[40] ^= 1;
    EXPECT_EQ(QtPictureLoader().Load(icon(damaged)).refusal, PictureRefusal::Damaged);
}

/// A picture whose codes stand for longer and longer runs of its first pixel.
Bytes GifOf(int codes) {
    PictureBytes data;
    unsigned held = 0, bits = 0, size = 3;
    const auto put = [&](unsigned code) {
        held |= code << bits;
        for (bits += size; bits >= 8; bits -= 8, held >>= 8) data.Little(held & 0xFF, 1);
    };
    put(4);  // clears the table
    put(0);
    unsigned next = 6;
    for (int i = 1; i < codes; ++i) {
        put(std::min(next, 4095U));
        if (next < 4096 && ++next >= 1U << size && size < 12) ++size;
    }
    put(5);  // ends
    data.Little(held & 0xFF, 1);
    const Bytes all = data.Bytes();
    PictureBytes file("GIF89a");
    file.Little(20, 2).Little(20, 2).Little(0x80, 1).Little(0, 2).Big(0x010203, 3).Big(0xFFFFFF, 3);
    file.Text(",").Little(0, 4).Little(20, 2).Little(20, 2).Little(0, 1).Little(2, 1);
    for (std::size_t at = 0; at < all.size(); at += 255) {
        const std::size_t length = std::min<std::size_t>(255, all.size() - at);
        file.Little(length, 1);
        file.Append({all.begin() + static_cast<std::ptrdiff_t>(at),
                     all.begin() + static_cast<std::ptrdiff_t>(at + length)});
    }
    return file.Little(0, 1).Text(";").Bytes();
}

TEST(HostilePictures, OfGifAreHeldToThePixelsThatTheyUnpackTo) {
    EXPECT_EQ(UnpackedGifPixels(PictureData("quarters.gif")), 33 * 24);
    EXPECT_EQ(UnpackedGifPixels(PictureData("animated.gif")), 33 * 24) << "of the first picture";
    for (const int codes : {1, 2, 28, 500, 3000}) {
        EXPECT_EQ(UnpackedGifPixels(GifOf(codes)), codes * (codes + 1) / 2) << codes;
        EXPECT_EQ(QtPictureLoader().Load(GifOf(codes)).width, 20) << codes;
    }
    Bytes longer = GifOf(28);
    const auto end = longer.end() - 2;  // the empty block before the trailer
    longer.insert(end, 101, 0x55);
    longer[longer.size() - 103] = 100;
    EXPECT_EQ(UnpackedGifPixels(longer), 28 * 29 / 2) << "what follows the end does not count";
    // 150 KB: for longer than 4091 pixels no code is left.
    const Bytes bomb = GifOf(100'000);
    EXPECT_GT(UnpackedGifPixels(bomb), 390'000'000);
    EXPECT_EQ(QtPictureLoader().Load(bomb).refusal, PictureRefusal::TooLarge);
}

TEST(HostilePictures, OfPortableMapsAreNotMadeOfBlanks) {
    QtPictureLoader loader;
    EXPECT_EQ(loader.Load(FromText("P1 2 1 # bits\n0 1")).width, 2);
    EXPECT_EQ(loader.Load(FromText("P3 1 1 255 # colours\n1 2 3")).width, 1);
    for (const char* begin : {"P1 2 1 ", "P2 2 1 9 ", "P3 1 1 9 "}) {
        EXPECT_EQ(loader.Load(FromText(begin + std::string(100'000, ' ') + "1 1 1")).refusal,
                  PictureRefusal::Damaged)
            << begin;
        EXPECT_EQ(loader.Load(FromText(begin + ("#" + std::string(100'000, 'a')) + "\n1 1 1")).refusal,
                  PictureRefusal::Damaged)
            << begin;
    }
}

constexpr std::string_view Svg =
    "<svg xmlns='http://www.w3.org/2000/svg' xmlns:x='http://www.w3.org/1999/xlink'";

std::string Drawing(std::string_view content, std::string_view size = " width='1000' height='1000'") {
    return std::string(Svg).append(size).append(">").append(content).append("</svg>");
}

/// Vector pictures need an application.
class HostileDrawings : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        static int count = 0;
        application = std::make_unique<QGuiApplication>(count, nullptr);
    }
    static void TearDownTestSuite() { application.reset(); }

    PictureRefusal Refusal(const std::string& file) { return loader.Load(FromText(file)).refusal; }

    static inline std::unique_ptr<QGuiApplication> application;
    QtPictureLoader loader;
};

/// `levels` groups, each of which uses the one before ten times.
std::string Multiplied(int levels) {
    std::string text = "<defs><rect id='a0' width='1' height='1'/>";
    for (int i = 0; i < levels; ++i)
        text += "<g id='a" + std::to_string(i + 1) + "'>" +
                Times(10, "<use x:href='#a" + std::to_string(i) + "'/>") + "</g>";
    return text + "</defs><use x:href='#a" + std::to_string(levels) + "'/>";
}

/// Up and down within a thousandth of the picture: nothing, unless it is scaled.
std::string Tiny() { return "M0 0" + Times(2000, "l.001 1l.001 -1"); }

/// Up and down, over and over again.
std::string Zigzag(int lines) {
    std::string path = "M0 0";
    for (int i = 0; i < lines; ++i) path += "L" + std::to_string(i * 1000 / lines) + (i % 2 ? " 1000" : " 0");
    return path;
}

TEST_F(HostileDrawings, ThatTakeMinutesAreTooElaborate) {
    const std::string gradient =
        "<radialGradient id='r' spreadMethod='repeat' r='.01'><stop offset='0' stop-color='red'/>"
        "<stop offset='1' stop-color='blue'/></radialGradient>";
    // clang-format off
    const std::pair<const char*, std::string> drawings[] = {
        {"lines up and down",      Drawing("<path d='" + Zigzag(2000) + "'/>")                              },
        {"a stroke up and down",   Drawing("<path fill='none' stroke='red' d='" + Zigzag(1000) + "'/>")     },
        {"the same, scaled",       Drawing("<g transform='scale(1000)'><path transform='scale(.001)' d='" +
                                           Zigzag(2000) + "'/></g>")                                        },
        {"the same, by a view",    Drawing("<path d='" + Zigzag(2000) + "'/>",
                                           " width='4000' height='4000' viewBox='0 0 1000 1000'")           },
        {"the same, by style",     Drawing("<path style='transform:scale(1000)' d='" + Zigzag(2000) + "'/>")},
        {"the same, by a sheet",   Drawing("<style>path{transform:scale(1000)}</style><path d='M0 0" +
                                           Times(2000, "l.001 1l.001 -1") + "'/>")                          },
        {"the same, in escapes",   Drawing("<style>path{tra\\6esform:scale(1000)}</style><path d='M0 0" +
                                           Times(2000, "l.001 1l.001 -1") + "'/>")                          },
        {"a polygon",              Drawing("<polygon points='" + Times(1000, "0 0 1 1000 ") + "'/>")        },
        {"long dashes",            Drawing("<path stroke='red' stroke-width='100' stroke-dasharray='.5' d='" +
                                           Zigzag(100) + "'/>")                                             },
        {"dashes of a sheet",      Drawing("<style>path{stroke:red;stroke-width:100;stroke-dasharray:.5}"
                                           "</style><path d='" + Zigzag(100) + "'/>")                       },
        {"dashed letters",         Drawing("<text font-size='400' stroke='red' stroke-width='700' "
                                           "stroke-dasharray='2'>" + Times(20, "abc Hello ") + "</text>")   },
        {"large areas",            Drawing(gradient + Times(200, "<rect width='9999' height='9999' "
                                                                 "fill='url(#r)'/>"),
                                           " width='10000' height='10000'")                                 },
        {"areas in percent",       Drawing(gradient + Times(200, "<rect width='100%' height='100%'/>"),
                                           " width='10000' height='10000'")                                 },
        {"uses of uses",           Drawing(Multiplied(6))                                                   },
        {"uses, no size given",    Drawing(Multiplied(6), "")                                               },
        {"letters",                Drawing("<text>" + Times(10'000, "abcdefghij") + "</text>")              },
        {"texts",                  Drawing(Times(18'000, "<text>a</text>"))                                 },
        {"rules",                  Drawing("<style>" + Times(10'000, "a{}") + "</style>" +
                                           Times(10'000, "<g/>"))                                           },
        {"rules of ancestors",     Drawing("<style>" + Times(2000, "a b{}") + "</style>" + Times(90, "<g>") +
                                           Times(2000, "<g/>") + Times(90, "</g>"))                         },
        {"rules of siblings",      Drawing("<style>" + Times(100, "a+b{}") + "</style>" +
                                           Times(5000, "<g/>"))                                             },
        {"declarations",           Drawing("<style>g{" + Times(10'000, "fill:red;") + "}</style>" +
                                           Times(5000, "<g/>"))                                             },
        {"elements",               Drawing(Times(20'000, "<g/>"))                                           },
        {"levels",                 Drawing(Times(100, "<g>") + Times(100, "</g>"))                          },
        {"bytes",                  Drawing("<path d='" + std::string(std::size_t{4} << 20, ' ') + "'/>")    },
        {"attributes",             Drawing("", Times(300, " a='b'"))                                        },
    };
    // clang-format on
    for (const auto& [name, file] : drawings) EXPECT_EQ(Refusal(file), PictureRefusal::TooElaborate) << name;
}

TEST_F(HostileDrawings, HideNoWork) {
    const std::string stroke = "stroke:red;stroke-width:100;stroke-dasharray:.5";
    // clang-format off
    const std::pair<const char*, std::string> drawings[] = {
        {"an attribute after the style", Drawing("<path style='" + stroke + "' stroke='none' stroke-width='0' d='" +
                                                 Zigzag(100) + "'/>")                                            },
        {"a transformation after it",    Drawing("<path style='transform:scale(1000)' transform='scale(1)' d='" +
                                                 Tiny() + "'/>")                                                 },
        {"one of another namespace",     Drawing("<path transform='scale(1000)' o:transform='scale(.001)' "
                                                 "xmlns:o='o' d='" + Tiny() + "'/>")                             },
        {"within an unknown one",        Drawing("<g transform='unheard(of)'><path transform='rotate(-45)' d='" +
                                                 Tiny() + "'/></g>")                                             },
        {"unknown, turned back",         Drawing("<g transform='scale(1e)'><g transform='scale(0)'><path d='" +
                                                 Tiny() + "'/></g></g>")                                         },
        {"a sheet in pieces",            Drawing("<style>path{stroke:red;stroke-wi<!-- -->dth:10<![CDATA[0;str]]>"
                                                 "oke-dasharray:.5}</style><path d='" + Zigzag(100) + "'/>")      },
        {"a sheet behind a comment",     Drawing("<style>/* } */path{/* */" + stroke + "}</style><path d='" +
                                                 Zigzag(100) + "'/>")                                            },
        {"a sheet behind half a one",    Drawing("<style>path{" + stroke + "}/* </style><path d='" + Zigzag(100) +
                                                 "'/>")                                                          },
        {"a sheet for some media",       Drawing("<style>@media all { path{" + stroke + "} }</style><path d='" +
                                                 Zigzag(100) + "'/>")                                            },
        {"what a group passes on",       Drawing("<g style='" + stroke + "'><path d='" + Zigzag(100) + "'/></g>")},
        {"what a use passes on",         Drawing("<defs><path id='a' d='" + Zigzag(100) + "'/></defs><use x:href="
                                                 "'#a' style='" + stroke + "'/>")                                },
        {"a part of a text",             Drawing("<text>a<tspan font-size='400' style='" + stroke + "'>" +
                                                 Times(20, "abc Hello ") + "</tspan></text>")                    },
        {"the second of one name",       Drawing("<defs><g id='a'/><path id='a' d='" + Zigzag(2000) + "'/></defs>"
                                                 "<use x:href='#a'/>")                                           },
        {"a path that is broken",        Drawing("<path transform='scale(1000)' d='" + Tiny() + "!'/>")           },
        {"a number cut in two",          Drawing("<path transform='scale(1000)' d='M0 0" +
                                                 Times(2000, "l.001 1l.001 -1") + "l0" + std::string(300, '0') +
                                                 "5 1'/>")                                                       },
        {"attributes behind a quote",    "<?a ' ?>" + Drawing("", Times(300, " a=\"b\""))                        },
        {"attributes behind a comment",  "<!-- ' -->" + Drawing("", Times(300, " a=\"b\""))                      },
        {"an endless number",            Drawing("<path d='M0 0t" + std::string(800'000, '1') + "'/>")            },
        {"a path that would be cut",     Drawing("<path d='M0 0t" + Times(20'000, "1 1 ") + "'/>")               },
        {"many paths",                   Drawing(Times(40, "<path d='M0 0t" + Times(10'000, "1 1 ") + "'/>"))     },
    };
    // clang-format on
    for (const auto& [name, file] : drawings) EXPECT_EQ(Refusal(file), PictureRefusal::TooElaborate) << name;
}

TEST_F(HostileDrawings, ThatAreNoWorkAreDrawn) {
    // clang-format off
    const std::pair<const char*, std::string> drawings[] = {
        {"lines up and down",        Drawing("<path d='" + Zigzag(30) + "'/>")                            },
        {"flat lines",               Drawing("<path transform='matrix(0 1 1 0 0 0)' d='" + Zigzag(500) + "'/>")},
        {"large areas",              Drawing(Times(200, "<rect width='1000' height='1000'/>"))             },
        {"a use of itself",          Drawing("<g id='a'><use x:href='#a'/><rect width='9' height='9'/></g>")},
        {"each uses the other",      Drawing("<g id='a'><use x:href='#b'/></g><g id='b'><use x:href='#a'/>"
                                             "</g>")                                                       },
        {"uses of uses",             Drawing(Multiplied(3))                                                },
        {"a gradient of itself",     Drawing("<linearGradient id='a' x:href='#a'/><rect fill='url(#a)'/>") },
        {"letters",                  Drawing("<text>" + Times(100, "abcdefghij") + "</text>")              },
        {"the usual document type",  "<?xml version='1.0' encoding='iso-8859-1'?><!DOCTYPE svg PUBLIC "
                                     "'-//W3C//DTD SVG 1.1//EN' 'http://www.w3.org/Graphics/SVG/1.1/DTD/"
                                     "svg11.dtd'>" + Drawing("<rect/>")                                    },
        {"text in capitals",         Drawing("<style>text{text-transform:none}</style><path d='" +
                                             Zigzag(30) + "'/>")                                          },
        {"after a comment",          "\xEF\xBB\xBF \n<!-- a = '" + Times(300, "=") + "' -->" + Drawing("")   },
    };
    // clang-format on
    for (const auto& [name, file] : drawings) {
        const LoadedPicture picture = loader.Load(FromText(file));
        EXPECT_EQ(picture.width, 1000) << name << ": " << Words(picture.refusal);
    }
}

TEST_F(HostileDrawings, OfManySmallShapesAreOrdinary) {
    // Half a megabyte, like a traced emblem.
    std::mt19937 random(1891);
    std::string paths;
    for (int i = 0; i < 2500; ++i) {
        paths += "<path class='a" + std::to_string(i % 20) + "' d='M" + std::to_string(random() % 950) + " " +
                 std::to_string(random() % 1200);
        for (int k = 0; k < 10; ++k) {
            paths += "c";
            for (int number = 0; number < 6; ++number)
                paths += std::to_string(static_cast<int>(random() % 17) - 8) + " ";
        }
        paths += "z'/>";
    }
    std::string sheet;
    for (int i = 0; i < 20; ++i)
        sheet += ".a" + std::to_string(i) + "{fill:#" + std::to_string(100 + i) + "}";
    const LoadedPicture picture = loader.Load(
        FromText(Drawing("<defs><style>" + sheet + "</style></defs>" + paths, " viewBox='0 0 1000 1300'")));
    EXPECT_EQ(picture.height, 1300) << Words(picture.refusal);
}

TEST_F(HostileDrawings, ThatTheToolkitCutsOffAreNotShown) {
    std::string path = "M0 0";
    for (int i = 0; i < 40'000; ++i) path += "h1";
    EXPECT_EQ(Refusal(Drawing("<path d='" + path + "'/>")), PictureRefusal::TooElaborate);
    EXPECT_EQ(Refusal(Drawing("<path d='M0 0h10v10z and so on'/>")), PictureRefusal::None)
        << "broken by itself: as far as it goes";
}

TEST_F(HostileDrawings, ThatNameOrDeclareThingsAreRefused) {
    // clang-format off
    const std::pair<std::string, PictureRefusal> files[] = {
        {"<!DOCTYPE svg [<!ENTITY a 'aaaa'><!ENTITY b '&a;&a;&a;'>]>" + Drawing("<text>&b;</text>"),
         PictureRefusal::DeclaresEntities},
        {"<!DOCTYPE svg [<!ATTLIST g a CDATA 'b'>]>" + Drawing("<g/>"), PictureRefusal::DeclaresEntities},
        {"<!DOCTYPE svg SYSTEM 'file:///dev/stdin' []>" + Drawing("<g/>"), PictureRefusal::DeclaresEntities},
        {Drawing("<text>&unknown;</text>"), PictureRefusal::Damaged},
        {Drawing("<image x:href='data:image/svg+xml;base64,AAAA'/>"), PictureRefusal::NamesOtherFiles},
        {Drawing("<g><image href='/dev/stdin'/></g>"), PictureRefusal::NamesOtherFiles},
        {"<?xml-stylesheet href='/dev/stdin'?>" + Drawing(""), PictureRefusal::NamesOtherFiles},
        {"<?xml version='1.0' encoding='IBM037'?>" + Drawing(""), PictureRefusal::NotSupported},
        {Drawing("<g>"), PictureRefusal::Damaged},
        {Drawing("", " width='70000' height='1'"), PictureRefusal::TooLarge},
        {Drawing("", " viewBox='0 0 20000 20000'"), PictureRefusal::TooLarge},
    };
    // clang-format on
    for (const auto& [file, reason] : files) EXPECT_EQ(Refusal(file), reason) << file;
}

TEST_F(HostileDrawings, LoseWhatNeedNotBeDrawn) {
    // Each would paint the picture red, or hide the green ground.
    // clang-format off
    const char* const parts[] = {
        "<clipPath><rect width='9' height='9' fill='red'/></clipPath>",
        "<mask><rect width='9' height='9' fill='red'/></mask>",
        "<marker><rect width='9' height='9' fill='red'/></marker>",
        "<pattern><image x:href='/dev/stdin'/></pattern>",
        "<unheardof><rect width='9' height='9' fill='red'/></unheardof>",
        "<o:rect xmlns:o='http://example.net/' width='9' height='9' fill='red'/>",
        "<textArea width='9' height='9' fill='red'>a b c</textArea>",
        "<rect width='1' height='1' fill='#0f0'><animate attributeName='width' from='9' to='9' dur='1s'/>"
        "<set attributeName='fill' to='red'/></rect>",
        "<font><glyph unicode='a' d='M0 0'/></font>",
        "<script>alert(1)</script>",
        "<desc><rect width='9' height='9' fill='red'/></desc>",
    };
    // clang-format on
    for (const char* part : parts) {
        const LoadedPicture picture =
            loader.Load(FromText(Drawing(std::string("<rect width='9' height='9' fill='#0f0'/>") + part,
                                         " width='9' height='9' transform='scale(.001)'")));
        ASSERT_EQ(picture.width, 9) << part;
        const auto* middle = &picture.pixels[28 * 4 + 3 * 4];
        EXPECT_EQ(middle[1], 255) << part;
        EXPECT_EQ(middle[2], 0) << part;
    }
}

TEST_F(HostileDrawings, KeepsWhatIsDrawn) {
    // clang-format off
    const char* const parts[] = {
        "<rect width='9' height='9' fill='red'/>",
        "<g style='fill:red'><circle cx='4' cy='4' r='9'/></g>",
        "<ellipse cx='4' cy='4' rx='9' ry='9' fill='red'/>",
        "<polygon points='0,0 9,0 9 9-9-9' fill='red'/><polyline points='0 0 0 9 9 9' fill='red'/>",
        "<line x1='-9' y1='4.5' x2='9' y2='4.5' stroke='red' stroke-width='9'/>",
        "<path d='M0 0h9v9H0z' fill='red'/>",
        "<defs><rect id='a' width='9' height='9' fill='red'/></defs><use x:href='#a'/>",
        "<defs><rect id='a' width='9' height='9' fill='red'/></defs><use href='#a' x:href='#a'/>",
        "<defs><rect xml:id='a' width='9' height='9' fill='red'/></defs><use x:href='#a'/>",
        "<linearGradient id='g'><stop stop-color='red'/></linearGradient>"
        "<linearGradient id='h' x:href='#g'/><rect width='9' height='9' fill='url(#h)'/>",
        "<style><![CDATA[.a{fill:red}]]></style><rect class='a' width='9' height='9'/>",
        "<a><switch><rect width='9' height='9' fill='red'/></switch></a>",
        "<text y='20' x='-9' font-size='40' stroke='red' stroke-width='20'>HH<tspan>H</tspan></text>",
    };
    // clang-format on
    for (const char* part : parts) {
        const LoadedPicture picture = loader.Load(FromText(Drawing(part, " width='9' height='9'")));
        ASSERT_EQ(picture.width, 9) << part;
        const auto* middle = &picture.pixels[28 * 4 + 3 * 4];
        EXPECT_EQ(middle[2], 255) << part;
        EXPECT_EQ(middle[1], 0) << part;
    }
}

}  // namespace
}  // namespace tessaloom::testing
