// A host with windows: the user chooses parameters in the component's dialogs, and points typed on
// the standard input come out transformed.
#include <QApplication>
#include <clocale>
#include <cstdio>

#include "kv_tr/published/clsTr.h"
#include "kv_tr/published/component.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/qt/qt_platform.h"

int main(int argc, char* argv[]) {
    const QApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");  // Qt took the user's, scanf shall read points
    kv_tr::InstallPlatform(kv_tr::QtPlatform(kv_tr::kEnglish));
    kv_tr::DecimalSeparator('.');

    kv_tr::clsTr transformation;
    const bool chosen = transformation.bChooseTrPrm();
    double first = 0.0;
    double second = 0.0;
    int read = 0;
    while (chosen && (read = std::scanf("%lf %lf", &first, &second)) == 2) {
        transformation.TrXY(first, second, first, second);
        std::printf("%.3f %.3f\n", first, second);
    }
    transformation.TearDown();
    const bool allRead = read == EOF && !std::ferror(stdin);
    if (chosen && !allRead) std::fputs("two numbers should stand here\n", stderr);
    const bool printed = std::fflush(stdout) == 0 && !std::ferror(stdout);
    if (!printed) std::fputs("not everything could be printed\n", stderr);
    return chosen && allRead && printed ? 0 : 1;
}
