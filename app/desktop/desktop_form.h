// The desktop program without its window: the parameters in use, and what can be done with them.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <vector>

#include "common/angle_units.h"
#include "desktop/recent_files.h"
#include "kv_tr/fit/fit.h"
#include "kv_tr/forms/form.h"
#include "kv_tr/published/clsTr.h"
#include "kv_tr/published/ml_strings.h"

namespace kv_tr::desktop {

/// Gets parameters from dialogs and files and applies them to what the user types. An action that
/// is cancelled or fails leaves the parameters and the control points as they were.
class DesktopForm : public Form {
public:
    /// The texts are those of the component, whose language the program switches.
    explicit DesktopForm(EmbeddedTexts& texts);
    ~DesktopForm() { transformation_.TearDown(); }
    DesktopForm(const DesktopForm&) = delete;
    DesktopForm& operator=(const DesktopForm&) = delete;

    bool HasParameters() const { return hasParameters_; }
    bool CanInvert() const { return hasParameters_ && !transformation_.bTypeIsPolinom(); }
    TR_PRM Record() const { return transformation_.udtTrPrm(); }
    std::string TypeText() const { return transformation_.sTrTypeName(); }
    std::string ListingText() const;  // lines end with CR LF
    /// The formulas of a polynomial type; the listing of six parameters has them itself.
    std::string FormulaText() const;
    const std::vector<std::string>& Recent() const { return recent_.Names(); }
    void AddRecent(const std::string& fileName);
    void RemoveRecent(const std::string& fileName);

    // Parameters.

    void ChooseParameters();
    void EditAffine();
    void ViewPolynomial();
    void ChooseNational();
    void Invert();
    void OpenParameters();
    void SaveParameters();
    /// Opens the adjustment dialog on control points.
    void Adjust(std::span<const ControlPoint> points, Type type);
    /// Takes the parameters of a fit that was made elsewhere.
    void TakeFit(const Transformation& fit);

    enum class FileKind { kProject, kParameters, kControlPoints, kCoordinates, kUnwanted };
    /// Loads a parameter file; other files are left to the caller. A file without the extension of
    /// a project or a parameter file holds control points if its first line is one; when they do
    /// not look like pairs, the user is asked, and may want none of it. Of a file that does not
    /// open the user is told.
    FileKind OpenFile(const std::string& fileName);

    // What the user types; the results are empty as long as that is not numbers.

    struct PointTexts {
        std::string first;
        std::string second;
    };
    PointTexts Image(const PointTexts& point) const;
    struct DirectionTexts {
        std::string image;
        std::string uncertainty;  // see app::DirectionUncertainty
    };
    DirectionTexts ImageOfDirection(const std::string& direction, const app::AngleUnit& unit,
                                    const std::string& length, const PointTexts& point) const;

    /// Switches the language of the whole program and remembers it.
    void SwitchLanguage(std::int32_t languageId);
    /// The language of the last run; the fallback before the first.
    static std::int32_t RememberedLanguage(std::int32_t fallback);
    void ShowAbout(const std::string& version, const std::string& toolkitVersion) const;

private:
    class Before;
    void Take(const std::function<bool()>& action);
    bool AreParametersFitted() const;
    bool LoadParameters(const std::string& fileName);

    EmbeddedTexts& texts_;
    clsTr transformation_;
    bool hasParameters_ = false;
    RecentFiles recent_;
};

}  // namespace kv_tr::desktop
