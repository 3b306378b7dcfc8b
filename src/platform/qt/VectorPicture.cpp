#include "platform/qt/VectorPicture.h"

#include <QXmlStreamReader>
#include <QXmlStreamWriter>
#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Bytes.h"
#include "platform/qt/NumberReader.h"
#include "platform/qt/StyleSheet.h"

namespace tessaloom {

namespace {

// A designer's logo has some hundred elements in some hundred kilobytes, a large map or illustration a few
// thousand in one or two megabytes.
constexpr std::size_t MaximumBytes = std::size_t{4} << 20;
/// The toolkit takes about 4 KB for each.
constexpr int MaximumElements = 20'000;
/// Drawing an element within another one is a call within another one.
constexpr int MaximumDepth = 100;
/// Of one element. The reader compares each with each.
constexpr int MaximumAttributes = 256;
/// Of all outlines, some 50 bytes each. What has more of them takes longer than the largest map.
constexpr std::size_t MaximumLines = 1'000'000;

constexpr QLatin1String SvgNamespace("http://www.w3.org/2000/svg"),
    XlinkNamespace("http://www.w3.org/1999/xlink"), XmlNamespace("http://www.w3.org/XML/1998/namespace");

/// What becomes of an element.
enum class Role {
    Root,
    Group,
    Definitions,
    Box,
    Circle,
    Ellipse,
    Line,
    Points,
    Path,
    Text,
    TextPart,
    Use,
    Gradient,
    Stop,
    Sheet
};

constexpr std::pair<QLatin1String, Role> Roles[] = {
    {QLatin1String("svg"),            Role::Root       },
    {QLatin1String("g"),              Role::Group      },
    {QLatin1String("a"),              Role::Group      },
    {QLatin1String("switch"),         Role::Group      },
    {QLatin1String("symbol"),         Role::Group      },
    {QLatin1String("defs"),           Role::Definitions},
    {QLatin1String("rect"),           Role::Box        },
    {QLatin1String("circle"),         Role::Circle     },
    {QLatin1String("ellipse"),        Role::Ellipse    },
    {QLatin1String("line"),           Role::Line       },
    {QLatin1String("polyline"),       Role::Points     },
    {QLatin1String("polygon"),        Role::Points     },
    {QLatin1String("path"),           Role::Path       },
    {QLatin1String("text"),           Role::Text       },
    {QLatin1String("tspan"),          Role::TextPart   },
    {QLatin1String("use"),            Role::Use        },
    {QLatin1String("linearGradient"), Role::Gradient   },
    {QLatin1String("radialGradient"), Role::Gradient   },
    {QLatin1String("stop"),           Role::Stop       },
    {QLatin1String("style"),          Role::Sheet      },
};

/// Nothing for what is left out together with all that is in it.
std::optional<Role> RoleOf(const QXmlStreamReader& reader) {
    const auto space = reader.namespaceUri();
    if (!space.isEmpty() && space != SvgNamespace) return std::nullopt;
    for (const auto& [name, role] : Roles)
        if (reader.name() == name) return role;
    return std::nullopt;
}

/// Whether no tag has more attributes than the reader takes in good time. Told from the bytes, before it sees
/// them.
bool HasFewAttributes(std::string_view file) {
    const auto skip = [&](std::size_t at, std::string_view begin, std::string_view end) {
        if (!file.substr(at).starts_with(begin)) return at;
        const std::size_t found = file.find(end, at + begin.size());
        return found == std::string_view::npos ? file.size() : found + end.size();
    };
    for (std::size_t at = file.find('<'); at < file.size(); at = file.find('<', at)) {
        const std::size_t past =
            std::max({skip(at, "<!--", "-->"), skip(at, "<![CDATA[", "]]>"), skip(at, "<?", "?>")});
        if (past != at) {
            at = past;
            continue;
        }
        int attributes = 0;
        for (char quote = 0; ++at < file.size() && (quote || file[at] != '>');) {
            if (quote == file[at])
                quote = 0;
            else if (!quote && (file[at] == '"' || file[at] == '\''))
                quote = file[at];
            if (!quote && file[at] == '=' && ++attributes > MaximumAttributes) return false;
        }
    }
    return true;
}

/// Whether the bytes of mark-up are those of ASCII, as `HasFewAttributes` relies on.
bool HasPlainMarkUp(QStringView encoding) {
    constexpr QLatin1String Plain[] = {QLatin1String("UTF-8"), QLatin1String("US-ASCII"),
                                       QLatin1String("ISO-8859-"), QLatin1String("windows-125")};
    return encoding.isEmpty() || std::ranges::any_of(Plain, [&](QLatin1String name) {
               return encoding.startsWith(name, Qt::CaseInsensitive);
           });
}

/// Naming the usual document type is harmless; what it declares itself are entities, which multiply.
bool HasDeclarations(const QXmlStreamReader& reader) { return reader.text().contains('['); }

std::string Plain(QStringView text) { return text.toLatin1().toStdString(); }

VectorPicture Refused(PictureRefusal reason) {
    VectorPicture none;
    none.refusal = reason;
    return none;
}

/// Reads a file, and writes what is drawn.
class Reduction {
public:
    explicit Reduction(QByteArray file) : reader_(std::move(file)), writer_(&picture_.drawing) {}

    VectorPicture Run() {
        while (picture_.refusal == PictureRefusal::None && !reader_.atEnd()) Take(reader_.readNext());
        if (reader_.hasError()) Refuse(PictureRefusal::Damaged);
        if (picture_.scene.elements.empty()) Refuse(PictureRefusal::NotSupported);
        if (picture_.refusal != PictureRefusal::None) return Refused(picture_.refusal);
        FinishSheets();
        return std::move(picture_);
    }

private:
    void Refuse(PictureRefusal reason) {
        if (picture_.refusal == PictureRefusal::None) picture_.refusal = reason;
    }

    void Take(QXmlStreamReader::TokenType token) {
        switch (token) {
            case QXmlStreamReader::StartDocument:
                if (!HasPlainMarkUp(reader_.documentEncoding())) Refuse(PictureRefusal::NotSupported);
                break;
            case QXmlStreamReader::DTD:
                if (HasDeclarations(reader_)) Refuse(PictureRefusal::DeclaresEntities);
                break;
            case QXmlStreamReader::ProcessingInstruction:
                if (reader_.processingInstructionTarget() == QLatin1String("xml-stylesheet"))
                    Refuse(PictureRefusal::NamesOtherFiles);
                break;
            case QXmlStreamReader::StartElement:
                Open();
                break;
            case QXmlStreamReader::EndElement:
                Close();
                break;
            case QXmlStreamReader::Characters:
                Characters();
                break;
            default:
                break;
        }
    }

    void Open() {
        if (++seen_ > MaximumElements || static_cast<int>(open_.size()) >= MaximumDepth)
            return Refuse(PictureRefusal::TooElaborate);
        depth_ = std::max(depth_, open_.size() + 1);
        const auto role = RoleOf(reader_);
        if (open_.empty() && role != Role::Root) return Refuse(PictureRefusal::NotSupported);
        const bool within = open_.empty() || open_.back().written;
        // An embedded picture is refused, too: it could be a vector picture that names a file in its turn.
        if (within && reader_.name() == QLatin1String("image"))
            return Refuse(PictureRefusal::NamesOtherFiles);
        open_.push_back({.written = within && role, .role = role.value_or(Role::Group)});
        if (!open_.back().written) return;
        if (role == Role::Root && open_.size() > 1) picture_.scene.unplaced = true;
        Write(*role);
    }

    void Close() {
        if (open_.back().written) writer_.writeEndElement();
        if (open_.back().written && open_.back().role == Role::Sheet)
            sheet_.Add(std::exchange(sheetText_, std::string()));
        open_.pop_back();
    }

    void Characters() {
        if (open_.empty() || !open_.back().written) return;
        const Role role = open_.back().role;
        if (role == Role::Sheet) sheetText_ += Plain(reader_.text());
        if (role == Role::Text || role == Role::TextPart)
            if (const int text = InnermostText(); text >= 0) Element(text).letters += reader_.text().size();
        if (role == Role::Sheet || role == Role::Text || role == Role::TextPart)
            writer_.writeCharacters(reader_.text().toString());
    }

    void Write(Role role) {
        const QXmlStreamAttributes attributes = reader_.attributes();
        if (open_.size() == 1) {
            writer_.writeDefaultNamespace(SvgNamespace);
            writer_.writeNamespace(XlinkNamespace, "xlink");
        }
        writer_.writeStartElement(SvgNamespace, reader_.name().toString());
        const bool isElement = role != Role::Gradient && role != Role::Stop && role != Role::Sheet;
        if (isElement) AddElement(role, attributes);
        if (const QString name = NameOf(attributes); !name.isEmpty()) writer_.writeAttribute("id", name);
        if (const QString link = LinkOf(attributes); !link.isEmpty())
            writer_.writeAttribute(XlinkNamespace, "href", "#" + link);
        if (attributes.hasAttribute(XmlNamespace, QLatin1String("space")))
            writer_.writeAttribute("xml:space",
                                   attributes.value(XmlNamespace, QLatin1String("space")).toString());
        for (const QXmlStreamAttribute& attribute : attributes) Write(role, attribute);
        if (role == Role::Gradient) stops_ = 0;
        if (role == Role::Stop) picture_.scene.stops = std::max(picture_.scene.stops, ++stops_);
    }

    void Write(Role role, const QXmlStreamAttribute& attribute) {
        if (!attribute.namespaceUri().isEmpty()) return;
        const QString name = attribute.name().toString();
        // What is shown is the whole; nothing stretches it.
        if (role == Role::Root && name == QLatin1String("transform")) return;
        if (name != QLatin1String("id") && name != QLatin1String("href"))
            writer_.writeAttribute(name, attribute.value().toString());
    }

    /// An attribute that has a namespace by right and is often written without.
    static QStringView Either(const QXmlStreamAttributes& attributes, QLatin1String space,
                              QLatin1String name) {
        return attributes.hasAttribute(space, name) ? attributes.value(space, name) : attributes.value(name);
    }
    static QString NameOf(const QXmlStreamAttributes& attributes) {
        return Either(attributes, XmlNamespace, QLatin1String("id")).toString();
    }
    /// The name of what an element links to; empty when it links to nothing here.
    static QString LinkOf(const QXmlStreamAttributes& attributes) {
        const auto link = Either(attributes, XlinkNamespace, QLatin1String("href")).trimmed();
        return link.startsWith('#') ? link.mid(1).toString() : QString();
    }

    void AddElement(Role role, const QXmlStreamAttributes& attributes) {
        const int index = static_cast<int>(picture_.scene.elements.size());
        const int parent = Parent();
        picture_.scene.elements.emplace_back();
        open_.back().element = index;
        if (parent >= 0) Element(parent).children.push_back(index);
        VectorElement& element = Element(index);
        element.kind = KindOf(role);
        element.link = LinkOf(attributes);
        if (const QString name = NameOf(attributes); !name.isEmpty()) {
            picture_.scene.named.insert(name, index);
            classLetters_ += static_cast<double>(name.size());
        }
        const std::string style = Plain(attributes.value(QLatin1String("style")));
        StyleSheet own;
        own.Add(style);
        ReadStyle(element, attributes, own);
        if (index > 0) element.stretch = Stretch::Of(Plain(attributes.value(QLatin1String("transform"))));
        element.stretch.known = element.stretch.known && !own.Transforms();
        element.outline = OutlineOf(role, attributes);
        lines_ += element.outline.lines.size();
        if (lines_ > MaximumLines || element.outline.cut) Refuse(PictureRefusal::TooElaborate);
        if (index == 0) ReadView(attributes);
        if (const int text = InnermostText(); role == Role::TextPart && text >= 0)
            Element(text).within = Element(text).within.OrWorse(element.style);
    }

    static VectorElement::Kind KindOf(Role role) {
        if (role == Role::Definitions) return VectorElement::Kind::Definitions;
        if (role == Role::Use) return VectorElement::Kind::Use;
        if (role == Role::Text) return VectorElement::Kind::Text;
        return role >= Role::Box && role <= Role::Path ? VectorElement::Kind::Shape
                                                       : VectorElement::Kind::Group;
    }

    /// own: of the attribute "style"; which of the two wins does not matter here.
    void ReadStyle(VectorElement& element, const QXmlStreamAttributes& attributes, const StyleSheet& own) {
        for (const QXmlStreamAttribute& attribute : attributes) {
            if (!attribute.namespaceUri().isEmpty()) continue;
            const std::string name = Plain(attribute.name()), value = Plain(attribute.value());
            if (name == "class") classLetters_ += static_cast<double>(value.size());
            if (name == "stroke-miterlimit")
                picture_.scene.miterLimit = std::max(picture_.scene.miterLimit, LargestNumber(value));
            element.style = element.style.OrWorse(StyleOf(name, value));
        }
        element.style = element.style.OrWorse(own.Style());
        picture_.scene.miterLimit = std::max(picture_.scene.miterLimit, own.MiterLimit());
    }

    /// Sizes with units or percentages count as large as they can be.
    static VectorOutline OutlineOf(Role role, const QXmlStreamAttributes& attributes) {
        const auto length = [&](const char* name) {
            return LargestNumber(Plain(attributes.value(QLatin1String(name))));
        };
        switch (role) {
            case Role::Box:
                return VectorOutline::OfBox(length("width"), length("height"),
                                            length("rx") + length("ry") > 0);
            case Role::Circle:
                return VectorOutline::OfBox(2 * length("r"), 2 * length("r"), true);
            case Role::Ellipse:
                return VectorOutline::OfBox(2 * length("rx"), 2 * length("ry"), true);
            case Role::Line:
                return VectorOutline::OfLine(length("x1") + length("x2"), length("y1") + length("y2"));
            case Role::Points:
                return VectorOutline::OfPoints(Plain(attributes.value(QLatin1String("points"))));
            case Role::Path:
                return VectorOutline::OfPath(Plain(attributes.value(QLatin1String("d"))));
            default:
                return {};
        }
    }

    void ReadView(const QXmlStreamAttributes& attributes) {
        VectorScene& scene = picture_.scene;
        const std::string view = Plain(attributes.value(QLatin1String("viewBox")));
        NumberReader numbers(view);
        const auto x = numbers.Next(), y = numbers.Next(), width = numbers.Next(), height = numbers.Next();
        if (x && y && width > 0.0 && height > 0.0 && numbers.AtEnd()) {
            scene.viewWidth = *width;
            scene.viewHeight = *height;
            return;
        }
        // Without a view, what is shown are as many units as pixels, unless it is a part of what is drawn.
        scene.unplaced = scene.unplaced || !view.empty() ||
                         attributes.value(QLatin1String("width")).contains('%') ||
                         attributes.value(QLatin1String("height")).contains('%');
    }

    void FinishSheets() {
        VectorScene& scene = picture_.scene;
        scene.sheet = sheet_.Style();
        scene.miterLimit = std::max(scene.miterLimit, sheet_.MiterLimit());
        scene.unplaced = scene.unplaced || sheet_.Transforms();
        picture_.sheetWork = static_cast<std::int64_t>(
            std::min(sheet_.Work(seen_, static_cast<double>(depth_), classLetters_), 9e18));
    }

    /// An element of the file within which the reader is.
    struct Opened {
        bool written = false;
        Role role = Role::Group;
        int element = -1;  ///< Of the scene; -1: none.
    };

    int Parent() const {
        for (std::size_t i = open_.size() - 1; i-- > 0;)
            if (open_[i].element >= 0) return open_[i].element;
        return -1;
    }

    int InnermostText() {
        for (std::size_t i = open_.size(); i-- > 0;)
            if (open_[i].role == Role::Text) return open_[i].element;
        return -1;
    }

    VectorElement& Element(int index) { return picture_.scene.elements[static_cast<std::size_t>(index)]; }

    QXmlStreamReader reader_;
    VectorPicture picture_;
    QXmlStreamWriter writer_;
    std::vector<Opened> open_;
    StyleSheet sheet_;
    std::string sheetText_;  ///< Of the present sheet.
    int seen_ = 0;
    std::size_t lines_ = 0;
    std::size_t depth_ = 0;
    std::int64_t stops_ = 0;  ///< Of the present gradient.
    double classLetters_ = 0;
};

}  // namespace

VectorPicture VectorPicture::Of(std::span<const std::uint8_t> file) {
    if (file.size() > MaximumBytes) return Refused(PictureRefusal::TooElaborate);
    const std::string_view text = AsText(file);
    if (text.find('\0') != std::string_view::npos) return Refused(PictureRefusal::NotSupported);
    if (!HasFewAttributes(text)) return Refused(PictureRefusal::TooElaborate);
    return Reduction(QByteArray::fromRawData(text.data(), static_cast<qsizetype>(text.size()))).Run();
}

bool IsVectorPicture(std::span<const std::uint8_t> beginning) {
    const std::string_view text = AsText(beginning);
    if (text.find('\0') != std::string_view::npos || !HasFewAttributes(text)) return false;
    QXmlStreamReader reader(QByteArray::fromRawData(text.data(), static_cast<qsizetype>(text.size())));
    while (!reader.atEnd() && reader.readNext() != QXmlStreamReader::StartElement)
        if (reader.isDTD() && HasDeclarations(reader)) return reader.dtdName() == QLatin1String("svg");
    return reader.isStartElement() && RoleOf(reader) == Role::Root;
}

}  // namespace tessaloom
