// The residual graph as one page: for a printer or a picture.
#pragma once

#include <string>
#include <vector>

#include "kv_tr/fit/adjustment.h"
#include "kv_tr/forms/residual_graph.h"

namespace kv_tr {

/// Title and lines of text above a framed plan. Units are those of a screen, 96 to the inch.
struct GraphPage {
    static constexpr double kPictureWidth = 900;  // of a page that is saved as a picture
    static constexpr double kPictureHeight = 700;
    static constexpr double kMargin = 12;     // of white around it there
    static constexpr double kTitleSize = 16;  // heights of the letters
    static constexpr double kLineSize = 12;
    static constexpr double kLabelSize = 11;
    static constexpr double kLineStep = 16;

    double width = 0;
    double height = 0;
    std::string title{};
    std::vector<std::string> lines{};
    double planTop = 0;  // the frame reaches from here to the bottom over the whole width
    std::vector<GraphMark> marks{};  // places count from the frame's upper left corner
};

/// The page of an adjustment's last fit: title, type, its accuracy figures, the counts, the error
/// limit in metres, the plan.
GraphPage PageOf(const Adjustment& adjustment, double limit, const GraphLabels& labels,
                 double width, double height);

/// The accuracy figures as the dialog shows them, lines separated by CR LF.
std::string FiguresText(const Statistics& figures);
/// An error limit with as many decimals as tell it whole, at least two.
std::string LimitText(double limit);
/// "Calculated:" and "Excluded:" with their numbers.
std::string UsedCountText(const Adjustment& adjustment);
std::string ExcludedCountText(const Adjustment& adjustment);

/// The page as an SVG document, UTF-8.
std::string SvgOf(const GraphPage& page);

/// Writes a picture file. One that does not open is shown to the user; throws RuntimeError
/// kWriteFailed when not everything could be written.
void SavePicture(const std::string& path, const std::string& bytes);

}  // namespace kv_tr
