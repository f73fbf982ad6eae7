// The adjustment engine: from control points to the parameters of a transformation.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "kv_tr/files/point_source.h"
#include "kv_tr/fit/adjustment.h"
#include "kv_tr/published/bookkeeping.h"
#include "kv_tr/published/event.h"
#include "kv_tr/published/pairs.h"
#include "kv_tr/published/records.h"

namespace kv_tr {

/// Holds control points, fits a transformation to those in use, and keeps every residual.
///
/// All coordinates and residuals are metres. Trouble is shown to the user as a message and the
/// call returns normally; what throws says so. An object belongs to one thread at a time;
/// different objects may be used in different threads at once.
///
///     kv_tr::clsTrCalc engine;
///     engine.bLoadXYsFromFile("points.dat", false);
///     engine.eTrType(kv_tr::TR_AFFIN);
///     if (engine.bXYCntIsValid4TrType(engine.eTrType())) engine.DoCalcTr();
///     engine.TrXY(first, second, firstOut, secondOut);
class clsTrCalc {
public:
    /// An empty set, TR_HELMERT with all coefficients 0. Makes the host's language current and
    /// reads the remembered folder.
    clsTrCalc();
    /// Remembers the initial folder.
    ~clsTrCalc();
    clsTrCalc(const clsTrCalc&) = delete;
    clsTrCalc& operator=(const clsTrCalc&) = delete;

    /// Error limit of the adjustment dialog and of reports; the engine itself does not compare
    /// residuals with it.
    double gdErrLimit = 0.2;

    /// Raised with the new type after each step by which ExcludeByIx lowers the type.
    Event<enuTR_TYPE&> TypeChanched;

    // The set of control points.

    /// Puts copies of the pairs behind those of the set (bAppend) or in their place.
    void AddXY4Tr(std::span<const typeXYs4Tr> tXY4Tr, bool bAppend);
    /// The same with points as values.
    void Take(std::span<const ControlPoint> points, bool append);
    /// The files that the points come from, in the order in which they were loaded; pairs put in
    /// the place of others make the engine forget the files of those. Reports name them.
    const std::vector<PointSource>& Files() const { return files_; }
    /// Says which they are, for programs that read files themselves.
    void Files(std::vector<PointSource> files) { files_ = std::move(files); }
    /// Copies all pairs to tXY and their number to lCnt.
    void GetAllXYs(std::vector<typeXYs4Tr>& tXY, std::int32_t& lCnt) const;
    /// Copies the used (bUsed) or the excluded pairs to tXY and their number to lCnt. When there
    /// are none, lCnt is 0 and tXY stays as it was.
    void GetXYs(std::vector<typeXYs4Tr>& tXY, std::int32_t& lCnt, bool bUsed) const;
    /// Copies of all pairs.
    std::vector<typeXYs4Tr> Pairs() const;
    /// The adjustment that the engine works with, for programs that want its points without copies.
    /// RuntimeError kSubscript after TearDown.
    const Adjustment& Held() const;
    Adjustment& Held();
    /// How many pairs there are.
    std::int32_t lFullCnt() const;
    /// How many of them are excluded.
    std::int32_t lNotUsedCnt() const;
    /// The extent of all destination coordinates; -100000000 to 100000000 until points are added.
    void GetRect4Dest(double& dXmin, double& dYmin, double& dXmax, double& dYmax) const;
    /// Exchanges source and destination of all pairs. Parameters and residuals stay.
    void SwapSourDest();
    /// Takes every excluded pair back and fits again.
    void ResetAllNotUsed();
    /// Excludes pair lIx (from 0) or takes it back, lowers the type while too few pairs are in use
    /// for it, and fits again if bRecalc. The second last used pair cannot be excluded: the user
    /// is told so (text 79) and nothing changes. An index out of range is ignored.
    void ExcludeByIx(std::int32_t lIx, bool bRecalc);
    /// Lets the pairs go; afterwards only AddXY4Tr makes sense, anything that needs pairs is
    /// RuntimeError kSubscript. The owner calls it before it lets the engine go.
    void TearDown();

    // Type and parameters.

    /// The type that is fitted.
    enuTR_TYPE eTrType() const;
    /// Sets the type that the next fit fits, and nothing else.
    void eTrType(enuTR_TYPE type);
    /// The whole record: the type, and the coefficients of the last fit.
    TR_PRM udtTrPrm() const;
    /// Takes a record, its type included; residuals and figures stay.
    void udtTrPrm(const TR_PRM& record);
    /// Whether the type is 1 or more: the polynomials, the bilinear and the national types.
    bool bTypeIsPolinom() const;
    /// Whether enough pairs are in use for a type.
    bool bXYCntIsValid4TrType(enuTR_TYPE eTrType4Check) const;

    // The fit. docs/mathematics.md derives the models.

    /// Fits the current type to the used pairs and updates residuals and figures. Does nothing
    /// without pairs. Does not refuse too few pairs: a singular system shows "DET=0" and stores
    /// what comes out. Throws RuntimeError kDivisionByZero, with nothing changed, when the first
    /// source point of a TR_AFFIN_5 fit is the source centroid.
    void DoCalcTr();
    /// DoCalcTr for TR_HELMERT_3 with at most iterCntMax + 1 passes; text 77 when it does not
    /// converge before the last. For any other current type it is DoCalcTr.
    void DoCalc_Helmert3(std::int16_t iterCntMax = 20);
    /// The same for TR_AFFIN_5, with text 76.
    void DoCalc_Affin5(std::int16_t iterCntMax = 50);
    /// Which solution the fits compute; the documented one until another is chosen.
    kv_tr::Solution Solution() const { return solution_; }
    /// Chooses the solution of the fits that follow, and does nothing else.
    void Solution(kv_tr::Solution solution) { solution_ = solution; }
    /// Whether the last fit was the least-squares solution when it was made.
    const TruthCheck& Truth() const { return adjustment_.Check(); }
    /// What became of the last fit that computed something.
    const FitOutcome& Outcome() const { return adjustment_.Outcome(); }

    // Accuracy figures of the last fit over the used pairs, 0 before the first.

    /// Root mean square error of a point, both coordinates together, metres.
    double dRmsErr() const { return adjustment_.Figures().rms; }
    /// Root mean square error of the first coordinates, metres.
    double dRmsErrX() const { return adjustment_.Figures().rmsFirst; }
    /// Root mean square error of the second coordinates, metres.
    double dRmsErrY() const { return adjustment_.Figures().rmsSecond; }
    /// Mean residual of the first coordinates, metres.
    double dMiddleErrX() const { return adjustment_.Figures().meanFirst; }
    /// Mean residual of the second coordinates, metres.
    double dMiddleErrY() const { return adjustment_.Figures().meanSecond; }

    // Applying the parameters.

    /// Transforms a point; see EvalTrPrm.
    void TrXY(double dXsour, double dYsour, double& dXdest, double& dYdest) const;
    /// Transforms arrays of first and second coordinates, which must have one length: otherwise
    /// the result is false and nothing changes. The results may be the arrays themselves.
    bool bTrXYArr(const std::vector<double>& dX, const std::vector<double>& dY,
                  std::vector<double>& dXtr, std::vector<double>& dYtr) const;

    // Files.

    /// All pairs as text, in the format of control-point files.
    std::string sListXYs() const;
    /// Writes sListXYs to a file. Throws RuntimeError kFileNotOpen after a failure to open was
    /// shown to the user, kWriteFailed when not everything could be written.
    bool bSaveXYs4Tr(const std::string& sFileName);
    /// Reads a control-point file into the set, behind its pairs or in their place. A file or line
    /// that cannot be read is shown to the user (texts 70 and 74); what was read before is taken
    /// all the same. False when that was fewer than two pairs; see ReadControlPoints.
    bool bLoadXYsFromFile(const std::string& sFileXYs, bool bAppend);
    /// Asks the user for a control-point file without reading it. sFileName is the suggestion and
    /// then the choice, empty after a cancel.
    bool bChooseFile4LoadXYs4Tr(std::string& sFileName, std::string& sInitDir,
                                std::int32_t Owner = -1);
    /// The same for a file to save to, without writing it.
    bool bChooseFile4SaveXYs4Tr(std::string& sFileName, std::string& sInitDir,
                                std::int32_t Owner = -1);
    /// Writes the log of the current fit. A LanguageID other than 0 becomes the component's
    /// language and stays so. A file that cannot be opened is shown to the user and nothing is
    /// written. Throws RuntimeError kWriteFailed when not everything could be written.
    void SaveLog(const std::string& sLogFileName, std::int32_t LanguageID = 0);

    // Surroundings.

    /// The object's number in the trace registry.
    std::int32_t lDebugId() const { return trace_.Id(); }
    /// Opens the adjustment dialog; true when the user confirmed.
    bool bDoModal(bool bShowApplyButton);
    /// The folder that the component's file choosers open in.
    void sInitDir(const std::string& folder);
    /// Switches the language of the whole component.
    void setLanguageID(std::int32_t LanguageID);

private:
    void Calculate(FitOptions options);
    Transformation Current() const;

    TraceEntry trace_{"clsTrCalc"};
    Subscription hostLanguage_;
    Adjustment adjustment_;
    std::vector<PointSource> files_;
    kv_tr::Solution solution_ = kv_tr::Solution::kDocumented;
    /// The counts that stay after TearDown.
    struct Released {
        std::int32_t full;
        std::int32_t notUsed;
    };
    std::optional<Released> released_;
    std::string fileCaption_;  // fetched once: it keeps the language of the creation
};

}  // namespace kv_tr
