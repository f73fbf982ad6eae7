// Pages of a PDF document: texts, lines, and where the next thing goes.
#pragma once

#include <hpdf.h>

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "kv_tr/model/point.h"

namespace kv_tr {

/// Pages of A4. Lengths are points, 1/72 inch; y counts from the top of the page downwards.
class PdfCanvas {
public:
    static constexpr double kWidth = 595.28;
    static constexpr double kHeight = 841.89;
    static constexpr double kMargin = 43;  // left and right
    static constexpr double kTop = 48;
    static constexpr double kBottom = kHeight - 54;
    static constexpr double kTextWidth = kWidth - 2 * kMargin;

    enum class Face { kRegular, kBold };
    struct Colour {
        float red, green, blue;
    };
    static constexpr Colour kBlack{0, 0, 0};
    static constexpr Colour kGrey{0.4F, 0.4F, 0.4F};

    /// Throws PdfError when a font cannot be read.
    explicit PdfCanvas(const std::string& fontFolder);
    ~PdfCanvas();
    PdfCanvas(const PdfCanvas&) = delete;
    PdfCanvas& operator=(const PdfCanvas&) = delete;

    void SetInfo(const std::string& title, const std::string& date);
    std::string Bytes();

    double Y() const { return y_; }
    void Move(double by) { y_ += by; }
    /// Begins a page unless so much fits on this one. Whether a page was begun.
    bool Need(double height);

    std::size_t PageCount() const { return pages_.size(); }
    void TurnTo(std::size_t page) { current_ = page; }

    double WidthOf(std::string_view text, double size, Face face = Face::kRegular);
    /// The lines of a text that is broken between words, or within a word that is too long.
    std::vector<std::string> Wrapped(std::string_view text, double width, double size, Face face);

    void Text(double x, double y, std::string_view text, double size, Face face = Face::kRegular,
              Colour colour = kBlack);
    void Lines(const std::vector<std::pair<Point, Point>>& lines, double width, Colour colour);

private:
    double Advance(char32_t letter, Face face);
    void Embed(char32_t first, char32_t last, Face face);
    HPDF_Page Page() { return pages_[current_]; }
    HPDF_Font FontOf(Face face) { return face == Face::kBold ? bold_ : regular_; }
    HPDF_Font Load(const std::string& file);
    void BeginPage();
    void Check() const;

    HPDF_Doc document_;
    HPDF_STATUS error_ = HPDF_OK;
    HPDF_Font regular_ = nullptr;
    HPDF_Font bold_ = nullptr;
    std::vector<HPDF_Page> pages_;
    std::size_t current_ = 0;
    double y_ = 0;
    std::unordered_map<char32_t, double> advances_[2];  // of each face
    bool hasAccents_[2] = {false, false};               // the letters with several marks
};

}  // namespace kv_tr
