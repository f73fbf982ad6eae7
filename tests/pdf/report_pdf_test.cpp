// Reports as PDF: whole documents, pages as expected, the same bytes again.
#include "kv_tr/pdf/report_pdf.h"

#include <gtest/gtest.h>

#include "helpers/report_sample.h"

namespace kv_tr {
namespace {

std::size_t PagesOf(const std::string& pdf) {
    std::size_t count = 0;
    for (auto at = pdf.find("/Type /Page\n"); at != pdf.npos;
         at = pdf.find("/Type /Page\n", at + 1))
        ++count;
    return count;
}

TEST(PdfOf, MakesAWholeDocumentWithTheSameBytesAgain) {
    for (const std::int32_t language : {kHungarian, kVietnamese}) {
        const Report report = test::ReportFor(test::RoughPoints(9), Type::kHelmert, language);
        const std::string pdf = PdfOf(report);
        EXPECT_TRUE(pdf.starts_with("%PDF-1."));
        EXPECT_EQ(pdf.substr(pdf.size() - 6, 5), "%%EOF");
        EXPECT_EQ(PagesOf(pdf), 3U);
        EXPECT_NE(pdf.find("D:20260531"), pdf.npos);
        EXPECT_EQ(pdf, PdfOf(report));
    }
}

TEST(PdfOf, BreaksTablesIntoPages) {
    Report report{.language = "en", .title = "T", .date = "2026-05-31", .pageText = "{0}/{1}"};
    ReportTable table{.columns = {{"id", ReportTable::Kind::kForeign}, {"value"}}, .rows = {}};
    report.sections.push_back({"S", {}});
    EXPECT_EQ(PagesOf(PdfOf(report)), 1U);
    for (int i = 0; i < 500; ++i) table.rows.push_back({"P", std::to_string(i)});
    report.sections[0].blocks.push_back(table);
    // A row is 13.6 points high, a page holds 740 points: 53 rows below the head.
    EXPECT_EQ(PagesOf(PdfOf(report)), 10U);
}

TEST(PdfOf, TakesAnyForeignTextAndNamesAMissingFont) {
    for (const std::string& id :
         {std::string("\xFF\xF0\x9F\x98\x80\xE2\x82\n"), std::string(100000, 'w')}) {
        const Report report = test::ReportFor(test::RoughPoints(4, id), Type::kHelmert);
        EXPECT_GE(PagesOf(PdfOf(report)), 3U);
    }
    try {
        PdfOf({}, "/no/such");
        FAIL();
    } catch (const PdfError& error) {
        EXPECT_STREQ(error.what(), "/no/such/DejaVuSans.ttf");
    }
}

}  // namespace
}  // namespace kv_tr
