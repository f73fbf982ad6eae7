// Saving a report; what goes wrong is a message.
#include "kv_tr/forms/save_report.h"

#include <cstdlib>

#include "kv_tr/published/day_of_report.h"
#include "kv_tr/published/message.h"
#include "kv_tr/published/ml_strings.h"

namespace kv_tr {

using Trouble = WrittenReport::Trouble;

std::string ComplaintOfReportName(const std::string& fileName, bool hasPdf,
                                  const std::string& shown) {
    const Trouble trouble = TroubleOfReportName(fileName, hasPdf);
    if (trouble == Trouble::kNone) return {};
    return Translated(trouble == Trouble::kNoPdf ? Text::kReportNoPdf : Text::kReportExtension,
                      {shown});
}

bool SaveReport(const Report& report, const std::string& fileName, const PdfMaker& makePdf) {
    const WrittenReport written = WriteReport(report, fileName, makePdf);
    const auto complain = [](const std::string& text) { ShowMessage(text, Icon::kExclamation); };
    switch (written.trouble) {
        case Trouble::kNone: return true;
        case Trouble::kNotOpened: ReportOpenFailure(fileName); break;
        case Trouble::kNotWritten: complain(WriteFailure(fileName).what()); break;
        case Trouble::kNotMade: complain(Translated(Text::kReportNotMade, {written.cause})); break;
        default: complain(ComplaintOfReportName(fileName, makePdf != nullptr, fileName));
    }
    return false;
}

std::string DayOfReportOrMessage() {
    if (const auto day = DayOfReport()) return *day;
    ShowMessage("SOURCE_DATE_EPOCH: " +
                    Translated(Text::kUnsuitableNumber, {std::getenv("SOURCE_DATE_EPOCH")}),
                Icon::kExclamation);
    return {};
}

}  // namespace kv_tr
