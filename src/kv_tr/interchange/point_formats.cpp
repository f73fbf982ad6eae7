// Control points in the formats of other programs: which format a file has, and its reader.
#include "kv_tr/interchange/point_formats.h"

#include <algorithm>
#include <ios>
#include <sstream>
#include <utility>

#include "kv_tr/files/open_text.h"
#include "kv_tr/interchange/field_table.h"
#include "kv_tr/interchange/point_readers.h"
#include "kv_tr/text/file_names.h"
#include "kv_tr/text/line_reader.h"

namespace kv_tr {
namespace {

constexpr std::pair<PointFormat, std::string_view> kWords[] = {
    {PointFormat::kListing, "listing"}, {PointFormat::kCsv, "csv"},
    {PointFormat::kQgis, "qgis"},       {PointFormat::kGdal, "gcp"},
    {PointFormat::kVrt, "vrt"},         {PointFormat::kEsriLink, "link"},
    {PointFormat::kCadWorld, "cad"},    {PointFormat::kGrass, "grass"},
    {PointFormat::kGeoJson, "geojson"},
};

constexpr std::pair<std::string_view, PointFormat> kEndings[] = {
    {"dat", PointFormat::kListing},     {"lst", PointFormat::kListing},
    {"csv", PointFormat::kCsv},         {"points", PointFormat::kQgis},
    {"vrt", PointFormat::kVrt},         {"wld", PointFormat::kCadWorld},
    {"geojson", PointFormat::kGeoJson}, {"json", PointFormat::kGeoJson},
};

constexpr std::string_view kUtf16 = "UTF-16";
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::size_t kRowsLookedAt = 50;

/// What begins a text, in lower case and without blanks.
std::string Beginning(std::string_view text) {
    constexpr std::size_t kLooked = 4096;
    std::string beginning;
    for (const char c : text.substr(0, kLooked)) {
        if (c == ' ' || c == '\t' || c == '\r' || c == '\n') continue;
        beginning += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return beginning;
}

bool HasCrsLine(std::string_view text) {
    return !text.empty() && TakeLine(text).text.find("#CRS: ") != text.npos;
}

/// One or two lines of two pairs with a comma inside each.
bool IsCadWorld(const std::vector<std::string_view>& lines) {
    const auto isPair = [](std::string_view text) {
        const auto numbers = FieldsBetween(text, ',');
        return numbers.size() == 2 && std::ranges::all_of(numbers, IsNumber);
    };
    return !lines.empty() && lines.size() <= 2 &&
           std::ranges::all_of(lines, [&isPair](std::string_view line) {
               const auto pairs = BlankFields(line);
               return pairs.size() == 2 && std::ranges::all_of(pairs, isPair);
           });
}

/// Four coordinates and a status that says use, no use or deleted, below lines of comment.
bool IsGrass(std::string_view text, const std::vector<std::string_view>& lines) {
    if (!text.starts_with('#') || lines.empty()) return false;
    return std::ranges::all_of(lines, [](std::string_view line) {
        const auto fields = BlankFields(line);
        if (fields.size() != 5 || !std::ranges::all_of(fields, IsNumber)) return false;
        return fields[4].find('.') == fields[4].npos && *ParseNumber(fields[4]) <= 1.0;
    });
}

/// Lines of four numbers between blanks or tabs.
bool IsEsriLinks(const std::vector<std::string_view>& lines) {
    return !lines.empty() && std::ranges::all_of(lines, [](std::string_view line) {
        const auto fields = BlankFields(line);
        return fields.size() == 4 && std::ranges::all_of(fields, IsNumber);
    });
}

/// Whether ReadControlPoints takes the first line, or refuses it for its decimal commas only.
bool BeginsAsListing(std::string_view text) {
    while (!text.empty()) {
        const auto line = TakeLine(text).text;
        if (line.empty()) continue;
        ControlPoint ignored;
        const auto problem = ReadControlPoint(line, Comma::kSuspect, ignored);
        return !problem || problem->kind == Problem::Kind::kDecimalCommas;
    }
    return true;
}

/// Whether a quoted field has separators inside, which a listing would take for the end of a field.
bool HasQuotedSeparators(std::string_view text) {
    if (text.find('"') == text.npos) return false;
    const auto [separator, equal] = FindSeparator(text, 5);
    if (!equal) return false;
    const auto rows = SplitRows(text, separator, kRowsLookedAt);
    return std::ranges::any_of(rows, [](const Row& row) {
        return std::ranges::any_of(row.fields, [](const Field& field) {
            return field.raw.starts_with('"') &&
                   field.text.find_first_of(" ,;\t") != std::string::npos;
        });
    });
}

/// The format of a text of UTF-8 without a mark.
PointFormat FormatOf(std::string_view text) {
    const std::string beginning = Beginning(text);
    if (beginning.starts_with('{') && beginning.find("\"type\"") != std::string::npos)
        return PointFormat::kGeoJson;
    if (beginning.starts_with("<vrtdataset") || beginning.starts_with("<gcplist") ||
        (beginning.starts_with("<?xml") && text.find("<VRTDataset") != text.npos)) {
        return PointFormat::kVrt;
    }
    if (HasCrsLine(text) || beginning.starts_with("mapx,mapy") ||
        beginning.starts_with("mapxmapypixel"))
        return PointFormat::kQgis;
    auto lines = DataLines(text);
    const auto isOption = [](std::string_view line) {
        const auto fields = BlankFields(line);
        return std::ranges::find(fields, "-gcp") != fields.end();
    };
    if (!lines.empty() && isOption(lines.front())) return PointFormat::kGdal;
    if (IsCadWorld(lines)) return PointFormat::kCadWorld;
    if (lines.size() > kRowsLookedAt) lines.resize(kRowsLookedAt);
    if (IsGrass(text, lines)) return PointFormat::kGrass;
    if (HasQuotedSeparators(text)) return PointFormat::kCsv;
    if (HasHalvedNumbers(text)) return PointFormat::kCsv;
    if (BeginsAsListing(text)) return PointFormat::kListing;
    if (IsEsriLinks(lines)) return PointFormat::kEsriLink;
    return IsCsv(text) ? PointFormat::kCsv : PointFormat::kListing;
}

/// Yields bytes from where they are.
class BytesBuffer : public std::streambuf {
public:
    explicit BytesBuffer(std::string_view bytes) {
        char* const begin = const_cast<char*>(bytes.data());  // which is only read
        setg(begin, begin, begin + bytes.size());
    }
};

void ReadListing(std::string_view bytes, const PointReadingOptions& options, PointFile& file) {
    BytesBuffer buffer(bytes);
    std::istream stream(&buffer);
    PointReading reading = ReadControlPoints(
        stream, {.codePage = options.codePage, .comma = options.comma, .sigmas = options.sigmas});
    file.layout.columns = {"id", "src_first", "src_second", "dst_first", "dst_second"};
    if (options.sigmas)
        file.layout.columns.insert(file.layout.columns.end(), {"sigma_first", "sigma_second"});
    if (options.comma == Comma::kDecimalSign) file.layout.decimalSign = ',';
    file.points = std::move(reading.points);
    file.sigmas = std::move(reading.sigmas);
    file.problems = std::move(reading.problems);
}

}  // namespace

std::string_view WordOf(PointFormat format) {
    return std::ranges::find(kWords, format, &std::pair<PointFormat, std::string_view>::first)
        ->second;
}

std::optional<PointFormat> PointFormatNamed(std::string_view word) {
    const auto found =
        std::ranges::find(kWords, word, &std::pair<PointFormat, std::string_view>::second);
    return found == std::end(kWords) ? std::nullopt : std::optional(found->first);
}

std::optional<PointFormat> PointFormatOfName(std::string_view fileName) {
    for (const auto& [ending, format] : kEndings) {
        if (HasExtension(fileName, ending)) return format;
    }
    return std::nullopt;
}

bool IsOnMaps(PointFormat format) {
    return format != PointFormat::kListing && format != PointFormat::kCsv;
}

std::string DecodedText(std::string_view bytes, CodePage page, std::string& encoding) {
    if (auto text = FromUtf16(bytes)) {
        encoding = kUtf16;
        return *std::move(text);
    }
    while (bytes.ends_with('\x1A')) bytes.remove_suffix(1);  // with which old programs end a text
    const bool marked = bytes.starts_with(kUtf8Mark);
    if (marked) bytes.remove_prefix(kUtf8Mark.size());
    if (marked || IsUtf8(bytes)) {
        encoding = "UTF-8";
        return ValidUtf8(bytes);
    }
    encoding = page == CodePage::kWindows1258 ? "windows-1258" : "windows-1250";
    return FromCodePage(bytes, page);
}

bool TakeBytes(std::istream& stream, std::string& bytes) {
    std::size_t lineBegin = 0;
    std::string block(std::size_t{1} << 16, '\0');
    try {
        for (;;) {
            const auto count =
                stream.rdbuf()->sgetn(block.data(), static_cast<std::streamsize>(block.size()));
            if (count <= 0) return true;
            const std::string_view added(block.data(), static_cast<std::size_t>(count));
            const std::size_t end = added.find_last_of("\r\n");
            if (end != added.npos) lineBegin = bytes.size() + end;
            bytes += added;
            const bool lines = bytes.front() != '{' && bytes.front() != '<';
            if (lines && bytes.size() - lineBegin > 2 * BlockReader::kLongestLine) return true;
        }
    } catch (const std::ios_base::failure&) {
        return false;
    }
}

PointFormat RecognisePointFormat(std::string_view bytes) {
    std::string encoding;
    return FormatOf(DecodedText(bytes, CodePage::kWindows1250, encoding));
}

PointFile ReadPoints(std::string_view bytes, const PointReadingOptions& options) {
    PointFile file;
    std::string text = DecodedText(bytes, options.codePage, file.layout.encoding);
    file.format = options.format ? *options.format : FormatOf(text);
    switch (file.format) {
        case PointFormat::kListing:
            if (file.layout.encoding == kUtf16) {
                ReadListing(text, options, file);
            } else {
                std::exchange(text, {}).shrink_to_fit();
                ReadListing(bytes, options, file);
            }
            break;
        case PointFormat::kCsv: ReadCsv(text, options, file); break;
        case PointFormat::kQgis: ReadQgis(text, file); break;
        case PointFormat::kGdal: ReadGdal(text, file); break;
        case PointFormat::kVrt: ReadVrt(text, file); break;
        case PointFormat::kEsriLink: ReadEsriLinks(text, file); break;
        case PointFormat::kCadWorld: ReadCadWorld(text, file); break;
        case PointFormat::kGrass: ReadGrass(text, file); break;
        case PointFormat::kGeoJson: ReadGeoJson(text, file); break;
    }
    if (!IsOnMaps(file.format)) return file;
    for (auto& [id, source, destination, used] : file.points) {
        if (file.format != PointFormat::kGeoJson) source = FromMap(options.sourceAxes, source);
        destination = FromMap(options.targetAxes, destination);
    }
    return file;
}

PointFile ReadPoints(std::istream& stream, const PointReadingOptions& options) {
    std::string bytes;
    if (TakeBytes(stream, bytes)) return ReadPoints(bytes, options);
    PointFile file = ReadPoints(bytes, options);
    file.problems = {{.kind = Problem::Kind::kUnreadable,
                      .line = 1 + static_cast<std::uint64_t>(std::ranges::count(bytes, '\n'))}};
    return file;
}

PointFile ReadPointsOfFile(const std::string& fileName, const PointReadingOptions& options) {
    const PointSource source = PointSourceOf(fileName);  // before somebody changes it
    PointFile file;
    if (auto stream = OpenText(fileName)) {
        file = ReadPoints(*stream, options);
        file.source = source;
        return file;
    }
    file.problems.push_back({.kind = Problem::Kind::kNotOpened});
    return file;
}

}  // namespace kv_tr
