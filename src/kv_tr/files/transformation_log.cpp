// The report of a fit.
#include "kv_tr/files/transformation_log.h"

#include "kv_tr/files/formula_text.h"
#include "kv_tr/model/type_name.h"
#include "kv_tr/text/control_characters.h"

namespace kv_tr {
namespace {

/// "a0 = " to "a9 = ", then "a10= " and so on.
std::string Label(char series, int index) {
    return series + std::to_string(index) + (index < 10 ? " = " : "= ");
}

class LogWriter {
public:
    LogWriter(const Adjustment& adjustment, const TextLookup& texts, NumberStyle style,
              const std::function<void(const LogLine&)>& take)
        : adjustment_(adjustment), texts_(texts), style_(style), take_(take) {}

    void Write() {
        const Type type = adjustment_.FitType();
        Add("\t" + texts_(Text::kLogTitle));
        Add("");
        Add("\t" + TypeName(type, texts_));
        IsPolynomial(type) ? AddPolynomial() : AddSixParameters();
        AddFigures();
        AddTable(true, texts_(Text::kLogUsedPoints));
        Add("");
        if (adjustment_.ExcludedCount() > 0) AddTable(false, texts_(Text::kLogExcludedPoints));
        Add("");
    }

private:
    void Add(std::string text) const { take_({std::move(text)}); }

    std::string Metres(double value) const { return FixedText(value, 3, style_) + " m"; }

    /// Adds the lines of a text whose lines all end with CR LF.
    void AddText(std::string_view text) {
        for (auto end = text.find("\r\n"); end != text.npos; end = text.find("\r\n")) {
            Add(std::string(text.substr(0, end)));
            text.remove_prefix(end + 2);
        }
    }

    void AddSixParameters() {
        AddText(SixParameterText(adjustment_.Result(), style_));
        Add("");
        Add("");
    }

    void AddPolynomial() {
        const auto& [fitted, a, b] = adjustment_.Result();
        const Type type = adjustment_.FitType();
        for (int k = 0; k <= TermCount(type); ++k) {
            const auto index = static_cast<std::size_t>(k);
            Add("\t" + Label('a', k) + SciText(a[index], style_) + "          " + Label('b', k) +
                SciText(b[index], style_));
        }
        const auto formulas = FormulaTexts(type);
        Add("");
        Add("\t" + formulas[0]);
        for (std::size_t i = 1; i < formulas.size(); ++i) {
            AddText("\t" + formulas[i] + "\r\n");
            Add("");
        }
        Add("");
    }

    void AddFigures() {
        const Statistics& figures = adjustment_.Figures();
        Add("\t" + texts_(Text::kLogRmsErrors) + "\tY =" + Metres(figures.rmsFirst) +
            "\tX =" + Metres(figures.rmsSecond) + "\tYX=" + Metres(figures.rms));
        Add("\t" + texts_(Text::kLogRmsValues) + "\t" + texts_(Text::kSeriesFirst) +
            Metres(figures.meanFirst) + "\t" + texts_(Text::kSeriesSecond) +
            Metres(figures.meanSecond));
        Add("");
    }

    void AddTable(bool used, const std::string& title) {
        Add("\t" + title);
        Add(texts_(Text::kLogColumns));
        const auto points = adjustment_.Points();
        for (std::size_t i = 0; i < points.size(); ++i) {
            if (points[i].used != used) continue;
            take_({Row(points[i], adjustment_.Residuals()[i]), i});
        }
    }

    std::string Row(const ControlPoint& point, const Residual& residual) const {
        std::string row = PadLeft(WithoutControls(point.id), 20);
        for (const double coordinate : {point.source.first, point.source.second,
                                        point.destination.first, point.destination.second}) {
            row += PadLeft(FixedText(coordinate, 3, style_), 15);
        }
        for (const double error : {residual.first, residual.second, residual.Length()}) {
            row += PadLeft(FixedText(error, 3, style_), 10);
        }
        return row;
    }

    const Adjustment& adjustment_;
    const TextLookup& texts_;
    const NumberStyle style_;
    const std::function<void(const LogLine&)>& take_;
};

}  // namespace

std::vector<LogLine> LogOf(const Adjustment& adjustment, const TextLookup& texts,
                           NumberStyle style) {
    std::vector<LogLine> lines;
    ForEachLogLine(adjustment, texts, style, [&](const LogLine& line) { lines.push_back(line); });
    return lines;
}

void ForEachLogLine(const Adjustment& adjustment, const TextLookup& texts, NumberStyle style,
                    const std::function<void(const LogLine&)>& take) {
    LogWriter(adjustment, texts, style, take).Write();
}

std::string LogText(const Adjustment& adjustment, const TextLookup& texts, NumberStyle style) {
    std::string text;
    ForEachLogLine(adjustment, texts, style,
                   [&](const LogLine& line) { text += line.text + "\r\n"; });
    return text;
}

std::string TextOf(const std::vector<LogLine>& log) {
    std::string text;
    for (const LogLine& line : log) text += line.text + "\r\n";
    return text;
}

}  // namespace kv_tr
