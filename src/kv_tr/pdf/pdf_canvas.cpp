// Pages of a PDF document: texts, lines, and where the next thing goes.
#include "kv_tr/pdf/pdf_canvas.h"

#include <charconv>
#include <cstdio>

#include "kv_tr/pdf/report_pdf.h"
#include "kv_tr/text/control_characters.h"
#include "kv_tr/text/paths.h"

namespace kv_tr {
namespace {

/// The length of the character that valid UTF-8 begins with.
std::size_t SizeOfFirst(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text.front());
    return lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
}

char32_t FirstOf(std::string_view text) {
    const std::size_t size = SizeOfFirst(text);
    if (size == 1) return static_cast<unsigned char>(text.front());
    char32_t code = static_cast<unsigned char>(text.front()) & (0x7FU >> size);
    for (std::size_t i = 1; i < size; ++i) {
        code = (code << 6) | (static_cast<unsigned char>(text[i]) & 0x3FU);
    }
    return code;
}

/// The text as the library takes it: valid, without control characters and without characters
/// above U+FFFF.
std::string Presentable(std::string_view text) {
    const std::string valid = WithoutControls(text);
    std::string presentable;
    for (std::size_t i = 0; i < valid.size();) {
        const std::size_t size = SizeOfFirst(std::string_view(valid).substr(i));
        presentable += size == 4 ? "\uFFFD" : valid.substr(i, size);
        i += size;
    }
    return presentable;
}

float Single(double value) { return static_cast<float>(value); }

}  // namespace

PdfCanvas::PdfCanvas(const std::string& fontFolder)
    : document_(HPDF_New(
          [](HPDF_STATUS error, HPDF_STATUS, void* first) {
              HPDF_STATUS& kept = *static_cast<HPDF_STATUS*>(first);
              if (kept == HPDF_OK) kept = error;
          },
          &error_)) {
    if (document_ == nullptr) throw PdfError("libharu");
    try {
        HPDF_SetCompressionMode(document_, HPDF_COMP_ALL);
        HPDF_UseUTFEncodings(document_);
        HPDF_SetCurrentEncoder(document_, "UTF-8");
        regular_ = Load(fontFolder + "/DejaVuSans.ttf");
        bold_ = Load(fontFolder + "/DejaVuSans-Bold.ttf");
        for (const Face face : {Face::kRegular, Face::kBold}) {
            Embed(0xC0, 0x24F, face);   // Latin letters with one mark
            Embed(0x2C6, 0x36F, face);  // the marks
        }
        BeginPage();
        Check();
    } catch (...) {
        HPDF_Free(document_);
        throw;
    }
}

PdfCanvas::~PdfCanvas() { HPDF_Free(document_); }

HPDF_Font PdfCanvas::Load(const std::string& file) {
    if (!OpenToRead(PathOf(file)).good()) throw PdfError(file);
    const char* const name = HPDF_LoadTTFontFromFile(document_, file.c_str(), HPDF_TRUE);
    if (name == nullptr) throw PdfError(file);
    return HPDF_GetFont(document_, name, "UTF-8");
}

void PdfCanvas::Check() const {
    if (error_ == HPDF_OK) return;
    char code[32];
    std::snprintf(code, sizeof code, "libharu 0x%04lX", static_cast<unsigned long>(error_));
    throw PdfError(code);
}

void PdfCanvas::SetInfo(const std::string& title, const std::string& date) {
    HPDF_SetInfoAttr(document_, HPDF_INFO_TITLE, Presentable(title).c_str());
    HPDF_Date day{0, 0, 0, 0, 0, 0, ' ', 0, 0};
    if (std::sscanf(date.c_str(), "%4d-%2d-%2d", &day.year, &day.month, &day.day) == 3) {
        HPDF_SetInfoDateAttr(document_, HPDF_INFO_CREATION_DATE, day);
    }
}

std::string PdfCanvas::Bytes() {
    Check();
    HPDF_SaveToStream(document_);
    Check();
    std::string bytes(HPDF_GetStreamSize(document_), '\0');
    auto size = static_cast<HPDF_UINT32>(bytes.size());
    HPDF_ReadFromStream(document_, reinterpret_cast<HPDF_BYTE*>(bytes.data()), &size);
    bytes.resize(size);
    return bytes;
}

void PdfCanvas::BeginPage() {
    HPDF_Page page = HPDF_AddPage(document_);
    HPDF_Page_SetSize(page, HPDF_PAGE_SIZE_A4, HPDF_PAGE_PORTRAIT);
    pages_.push_back(page);
    current_ = pages_.size() - 1;
    y_ = kTop;
}

bool PdfCanvas::Need(double height) {
    if (y_ + height <= kBottom || y_ <= kTop) return false;
    BeginPage();
    return true;
}

/// Puts letters into the document. The library embeds a letter with the parts that the font makes
/// the letter of, but not the parts of these parts (the circumflex of ố), unless they were embedded
/// before.
void PdfCanvas::Embed(char32_t first, char32_t last, Face face) {
    for (char32_t letter = first; letter <= last; ++letter) {
        HPDF_Font_GetUnicodeWidth(FontOf(face), static_cast<HPDF_UNICODE>(letter));
    }
}

double PdfCanvas::Advance(char32_t letter, Face face) {
    bool& hasAccents = hasAccents_[static_cast<std::size_t>(face)];
    if (!hasAccents && letter >= 0x1E00 && letter <= 0x1FFF) {
        Embed(0x370, 0x3FF, face);
        Embed(0x1E00, 0x1FFF, face);
        hasAccents = true;
    }
    return HPDF_Font_GetUnicodeWidth(FontOf(face), static_cast<HPDF_UNICODE>(letter)) / 1000.0;
}

double PdfCanvas::WidthOf(std::string_view text, double size, Face face) {
    auto& advances = advances_[static_cast<std::size_t>(face)];
    const std::string shown = Presentable(text);
    double width = 0.0;
    for (std::string_view rest = shown; !rest.empty(); rest.remove_prefix(SizeOfFirst(rest))) {
        const char32_t letter = FirstOf(rest);
        const auto [known, isNew] = advances.try_emplace(letter, 0.0);
        if (isNew) known->second = Advance(letter, face);
        width += known->second;
    }
    return width * size;
}

std::vector<std::string> PdfCanvas::Wrapped(std::string_view text, double width, double size,
                                            Face face) {
    const std::string shown = Presentable(text);
    std::vector<std::string> lines(1);
    double used = 0.0;
    std::string_view rest = shown;
    while (!rest.empty()) {
        // A word with the blanks before it.
        std::size_t end = std::min(rest.find_first_not_of(' '), rest.size());
        end = std::min(rest.find(' ', end), rest.size());
        std::string_view word = rest.substr(0, end);
        rest.remove_prefix(end);
        const double wordWidth = WidthOf(word, size, face);
        if (used + wordWidth <= width) {
            lines.back() += word;
            used += wordWidth;
            continue;
        }
        if (used > 0.0) {
            lines.emplace_back();
            used = 0.0;
            word.remove_prefix(std::min(word.find_first_not_of(' '), word.size()));
        }
        while (!word.empty()) {
            const std::string_view letter = word.substr(0, SizeOfFirst(word));
            const double letterWidth = WidthOf(letter, size, face);
            if (used > 0.0 && used + letterWidth > width) {
                lines.emplace_back();
                used = 0.0;
            }
            lines.back() += letter;
            used += letterWidth;
            word.remove_prefix(letter.size());
        }
    }
    return lines;
}

void PdfCanvas::Text(double x, double y, std::string_view text, double size, Face face,
                     Colour colour) {
    const std::string shown = Presentable(text);
    if (shown.empty()) return;
    HPDF_Page_SetRGBFill(Page(), colour.red, colour.green, colour.blue);
    HPDF_Page_BeginText(Page());
    HPDF_Page_SetFontAndSize(Page(), FontOf(face), Single(size));
    HPDF_Page_TextOut(Page(), Single(x), Single(kHeight - y), shown.c_str());
    HPDF_Page_EndText(Page());
}

void PdfCanvas::Lines(const std::vector<std::pair<Point, Point>>& lines, double width,
                      Colour colour) {
    if (lines.empty()) return;
    HPDF_Page_SetRGBStroke(Page(), colour.red, colour.green, colour.blue);
    HPDF_Page_SetLineWidth(Page(), Single(width));
    for (const auto& [from, to] : lines) {
        HPDF_Page_MoveTo(Page(), Single(from.first), Single(kHeight - from.second));
        HPDF_Page_LineTo(Page(), Single(to.first), Single(kHeight - to.second));
    }
    HPDF_Page_Stroke(Page());
}

}  // namespace kv_tr
