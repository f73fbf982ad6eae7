// Parameters in use: the entry point of the component for host programs.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "kv_tr/model/direction.h"
#include "kv_tr/model/transformation.h"
#include "kv_tr/published/bookkeeping.h"
#include "kv_tr/published/clsTrCalc.h"
#include "kv_tr/published/records.h"

namespace kv_tr {

/// Holds the parameters of one transformation, applies, lists, saves and loads them, and owns an
/// adjustment engine that finds parameters from control points.
///
/// Coordinates are metres, directions radians from the first axis towards the second. Trouble is
/// shown to the user as a message and the call returns normally; what throws says so. An object
/// belongs to one thread at a time; different objects may be used in different threads at once.
///
///     kv_tr::clsTr transformation;
///     transformation.oCalcTr()->bLoadXYsFromFile("points.dat", false);
///     transformation.oCalcTr()->DoCalcTr();
///     transformation.udtTrPrm(transformation.oCalcTr()->udtTrPrm());
///     transformation.TrXY(first, second, firstOut, secondOut);
///     transformation.TearDown();
class clsTr {
public:
    /// The identity, TR_HELMERT, with an engine of the same type.
    clsTr();
    clsTr(const clsTr&) = delete;
    clsTr& operator=(const clsTr&) = delete;

    std::string gName;                ///< folder of the parameter file loaded last
    std::int32_t gId = 0;             ///< the host's own
    double PI = AngleConstants{}.pi;  ///< what TrAngle folds directions with, radians
    double RAD_90 = PI / 2.0;         ///< likewise
    double RAD_180 = PI;              ///< for hosts
    double RAD_270 = RAD_90 + PI;     ///< for hosts
    double RAD_360 = PI + PI;         ///< what TrAngle folds directions with

    /// The object's number in the trace registry.
    std::int32_t lDebugId() const { return trace_.Id(); }
    /// Lets the engine go. Call it before the last reference to the object is dropped.
    void TearDown();

    // The record.

    /// How many coefficients a coordinate a fit solves for; 0 for every type that has no fixed
    /// number of its own, Helmert and affine included, deliberately.
    std::int32_t lNumberOfParameters() const;
    /// The whole record, its type included. The engine's record is another one.
    TR_PRM udtTrPrm() const;
    /// Takes a whole record.
    void udtTrPrm(const TR_PRM& record);
    /// Takes type and six coefficients; the other coefficients stay.
    void udtTrAffinPrm(const AFFIN_PRM& record);
    /// Takes the built-in record of a national type; any other type changes nothing.
    void udtTrPrmByDAT2M1(enuTR_TYPE type);
    /// Lets the user choose a national type and takes its record. Always false, deliberately: the
    /// type tells what happened. Choosing TR_HER_STG loads TR_STG_HKR, deliberately.
    bool bLoadByDAT2M1();
    /// The six coefficients; false, with the arguments as they were, for a polynomial record.
    bool bGetAffinPrm(double& a0, double& a1, double& a2, double& b0, double& b1, double& b2) const;
    /// The same as bGetAffinPrm.
    bool bGetHelmertPrm(double& a0, double& a1, double& a2, double& b0, double& b1,
                        double& b2) const;
    /// The record that maps back; false, with the argument as it was, for a polynomial record.
    /// Throws RuntimeError kDivisionByZero for a record that has no inverse.
    bool bGetInversePrm(AFFIN_PRM& udtInvAFFIN_PRM) const;
    /// The name of the record's type in the current language.
    std::string sTrTypeName() const;
    /// Transforms a point; see EvalTrPrm.
    void TrXY(double dX, double dY, double& dXtr, double& dYtr) const;

    // Parameter files; docs/file-formats.md lays them out.

    /// Asks the user for a file of six parameters without reading it. sFileName is the suggestion
    /// and then the choice, empty after a cancel.
    bool bChooseFile4LoadAffinTrPrm(std::string& sFileName, std::string& sInitDir,
                                    std::int32_t Owner = -1);
    /// The same for a file to save to, without writing it.
    bool bChooseFile4SaveAffinTrPrm(std::string& sFileName, std::string& sInitDir,
                                    std::int32_t Owner = -1);
    /// The same for a polynomial file.
    bool bChooseFile4LoadPoliTrPrm(std::string& sFileName, std::string& sInitDir,
                                   std::int32_t Owner = -1);
    /// The same for a polynomial file to save to.
    bool bChooseFile4SavePoliTrPrm(std::string& sFileName, std::string& sInitDir,
                                   std::int32_t Owner = -1);
    /// Whether the type is 1 or more: the polynomials, the bilinear and the national types.
    bool bTypeIsPolinom() const;
    /// Lets the user say where parameters come from, and takes them; true when he confirmed.
    bool bChooseTrPrm();
    /// Asks for a file name that suits the record and saves to it. Yields nothing.
    void bChooseFileAndSaveTrPrm(std::string& sFileName, std::string& sInitDir,
                                 std::int32_t Owner = -1);
    /// Saves six parameters; false for a polynomial record and for a file that does not open.
    /// Throws RuntimeError kWriteFailed when not everything could be written.
    bool bSaveAffinTrPrm(const std::string& sFileTrPrm, bool bItr25Format = false);
    /// Loads six parameters. A polynomial record becomes TR_AFFIN first, any other keeps its type.
    /// Text that is no number ends the reading with message 74 and false; what was read before
    /// stays. True for a file that does not open, deliberately.
    bool bLoadAffinTrPrmFromFile(const std::string& sFileTrPrm, bool bItr25Format = false);
    /// Loads a polynomial; false when the number of coefficient lines is that of no type, with the
    /// type as it was and the coefficients read so far. See ReadPolynomialFile.
    bool bLoadPoliTrPrmFromFile(const std::string& sFileTrPrm);
    /// Saves the polynomial listing; false for a record of six parameters, true otherwise, also for
    /// a file that does not open, deliberately. Throws RuntimeError kWriteFailed when not
    /// everything could be written.
    bool bSavePoliTrPrm(const std::string& sFileTrPrm,
                        const std::optional<std::string>& vTitle = std::nullopt);

    // Listings; lines end with CR LF.

    /// Six parameters and their formula; empty for a polynomial record. The title does not appear,
    /// deliberately.
    std::string sListHelmertTrPrm(const std::optional<std::string>& vTitle = std::nullopt) const;
    /// Title (without one the type's name), origin and coefficients; empty for six parameters.
    std::string sListPoliTrPrm(const std::optional<std::string>& vTitle = std::nullopt) const;

    // Dialogs; true when the user confirmed.

    /// Opens the editor of six parameters on the record.
    bool bShowAffinTrPrm();
    /// Opens the viewer of polynomial parameters on the record.
    bool bShowPoliTrPrm();
    /// Shows the engine's control points as text; an empty title stands for the dialog's own.
    bool bShowXYs4Tr(const std::string& sTitle);

    /// Transforms a direction at a point, into [0, 2π). It is that of a vector of dLength metres,
    /// with differences in single precision; see MapDirection.
    void TrAngle(double dAngle, double& dAngleTr, double dX, double dY,
                 double dLength = 100.0) const;

    /// The engine itself. Throws RuntimeError kObjectNotSet after TearDown.
    std::shared_ptr<clsTrCalc> oCalcTr() const;
    /// The folder that the component's file choosers open in.
    void sInitDir(const std::string& folder);

private:
    TraceEntry trace_{"clsTr"};
    Subscription hostLanguage_;
    Transformation held_;
    std::shared_ptr<clsTrCalc> engine_;
};

}  // namespace kv_tr
