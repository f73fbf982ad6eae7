// clsTrCalc in Python.
#include "kv_tr/published/clsTrCalc.h"

#include <pybind11/stl/filesystem.h>

#include "python/arrays.h"
#include "python/binding.h"
#include "python/worth.h"

namespace kv_tr::python {
namespace {

using Path = std::filesystem::path;

py::list ListOf(const std::vector<typeXYs4Tr>& pairs) {
    py::list list(pairs.size());
    for (std::size_t i = 0; i < pairs.size(); ++i) list[i] = pairs[i];
    return list;
}

py::object OutcomeOf(const clsTrCalc& engine) {
    const auto& [trouble, converged, singularSystems] = engine.Outcome();
    const py::list troubles(Module().attr("FitTrouble"));
    return py::module_::import("kv_tr").attr("FitOutcome")(
        troubles[static_cast<std::size_t>(trouble)], converged, singularSystems);
}

}  // namespace

/// A handler that stays connected until it is told to let go or the engine ends.
class Connection {
public:
    Connection(clsTrCalc& engine, py::function handler) {
        *subscription_ =
            engine.TypeChanched.Subscribe([handler = std::move(handler), keep = subscription_](
                                              enuTR_TYPE& type) { handler(type); });
    }
    void Disconnect() { *subscription_ = {}; }

private:
    std::shared_ptr<Subscription> subscription_ = std::make_shared<Subscription>();
};

/// The event of an engine, as Python sees it.
struct TypeEvent {
    std::shared_ptr<clsTrCalc> engine;
};

namespace {

void AddEvent(py::module_& module) {
    py::class_<Connection>(module, "Connection", "A handler connected to an event.")
        .def("Disconnect", &Connection::Disconnect,
             "Lets the handler go; further calls do nothing.");
    py::class_<TypeEvent>(module, "TypeEvent", "The event TypeChanched of an engine.")
        .def(
            "Subscribe",
            [](const TypeEvent& event, const py::function& handler) {
                return Connection(*event.engine, handler);
            },
            py::arg("handler"),
            "Calls handler(type) after each step by which ExcludeByIx lowers the type, until the\n"
            "result is asked to Disconnect() or the engine ends. A handler that refers to the\n"
            "engine keeps it alive: disconnect it then.");
}

using Engine = py::class_<clsTrCalc, std::shared_ptr<clsTrCalc>>;

void AddPoints(Engine& engine) {
    using py::arg;
    engine.def(
        "AddXY4Tr",
        [](clsTrCalc& self, const py::iterable& tXY4Tr, bool bAppend) {
            self.AddXY4Tr(PairsFrom(tXY4Tr), bAppend);
        },
        arg("tXY4Tr"), arg("bAppend"),
        "Puts copies of the pairs behind those of the set (bAppend) or in their place. A pair is\n"
        "a typeXYs4Tr or a tuple of its fields, (sId, dXsour, dYsour, dXdest, dYdest). ValueError\n"
        "for coordinates that are not finite; the set is then as it was.");
    engine.def(
        "GetAllXYs",
        [](const clsTrCalc& self) {
            std::vector<typeXYs4Tr> pairs;
            std::int32_t count = 0;
            self.GetAllXYs(pairs, count);
            return ListOf(pairs);
        },
        "Copies of all pairs, with the residuals of the last fit.");
    engine.def(
        "GetXYs",
        [](const clsTrCalc& self, bool bUsed) {
            std::vector<typeXYs4Tr> pairs;
            std::int32_t count = 0;
            self.GetXYs(pairs, count, bUsed);
            return ListOf(pairs);
        },
        arg("bUsed"), "Copies of the pairs in use (bUsed) or of the excluded ones.");
    engine.def(
        "GetRect4Dest",
        [](const clsTrCalc& self) {
            double dXmin = 0, dYmin = 0, dXmax = 0, dYmax = 0;
            self.GetRect4Dest(dXmin, dYmin, dXmax, dYmax);
            return py::make_tuple(dXmin, dYmin, dXmax, dYmax);
        },
        "The extent of all destination coordinates: dXmin, dYmin, dXmax, dYmax. It is -100000000\n"
        "to 100000000 until points are added.");
    engine.def_property_readonly("lFullCnt", &clsTrCalc::lFullCnt, "How many pairs there are.");
    engine.def_property_readonly("lNotUsedCnt", &clsTrCalc::lNotUsedCnt,
                                 "How many pairs are excluded.");
    engine.def("SwapSourDest", &clsTrCalc::SwapSourDest,
               "Exchanges source and destination of all pairs. Parameters and residuals stay.");
    engine.def("ResetAllNotUsed", &clsTrCalc::ResetAllNotUsed,
               "Takes every excluded pair back and fits again.");
    engine.def("ExcludeByIx", &clsTrCalc::ExcludeByIx, arg("lIx"), arg("bRecalc"),
               "Excludes pair lIx (from 0) or takes it back, lowers the type while too few pairs\n"
               "are in use for it, and fits again if bRecalc. The second last used pair cannot be\n"
               "excluded, which is shown as a message. An index out of range is ignored.");
    engine.def("TearDown", &clsTrCalc::TearDown,
               "Lets the pairs go; afterwards only AddXY4Tr makes sense, what needs pairs is\n"
               "RuntimeError 9.");
}

void AddFit(Engine& engine) {
    using py::arg;
    engine.def_property("eTrType", py::overload_cast<>(&clsTrCalc::eTrType, py::const_),
                        Setting("eTrType", py::overload_cast<enuTR_TYPE>(&clsTrCalc::eTrType)),
                        "The type that is fitted.");
    engine.def_property("udtTrPrm", py::overload_cast<>(&clsTrCalc::udtTrPrm, py::const_),
                        Setting("udtTrPrm", py::overload_cast<const TR_PRM&>(&clsTrCalc::udtTrPrm)),
                        "A copy of the record: the type, and the coefficients of the last fit.\n"
                        "Changing the copy changes nothing until it is assigned.");
    engine.def("bTypeIsPolinom", &clsTrCalc::bTypeIsPolinom,
               "Whether the type is 1 or more: polynomials, bilinear and national types.");
    engine.def("bXYCntIsValid4TrType", &clsTrCalc::bXYCntIsValid4TrType, arg("eTrType4Check"),
               "Whether enough pairs are in use for a type.");
    engine.def("DoCalcTr", &clsTrCalc::DoCalcTr,
               "Fits the current type to the used pairs and updates residuals and figures. Does\n"
               "nothing without pairs and does not refuse too few: ask bXYCntIsValid4TrType.\n"
               "RuntimeError 11, with nothing changed, when the first source point of a\n"
               "TR_AFFIN_5 fit is the source centroid.");
    engine.def("DoCalc_Helmert3", &clsTrCalc::DoCalc_Helmert3, arg("iterCntMax") = 20,
               "The iterative fit of TR_HELMERT_3 with at most iterCntMax + 1 passes.");
    engine.def("DoCalc_Affin5", &clsTrCalc::DoCalc_Affin5, arg("iterCntMax") = 50,
               "The iterative fit of TR_AFFIN_5 with at most iterCntMax + 1 passes.");
    engine.def_property(
        "Solution",
        [](const clsTrCalc& self) {
            return self.Solution() == Solution::kAccurate ? "accurate" : "documented";
        },
        Setting("Solution",
                [](clsTrCalc& self, const py::object& solution) {
                    self.Solution(SolutionFrom(solution, "Solution"));
                }),
        "Which solution the fits that follow compute, 'documented' or 'accurate'.");
    engine.def_property_readonly(
        "Truth", [](const clsTrCalc& self) { return CheckOf(self.Truth()); },
        "A TruthCheck: whether the last fit was the least-squares solution when it was made.");
    engine.def_property_readonly("Outcome", OutcomeOf,
                                 "A FitOutcome: what became of the last fit that computed\n"
                                 "something.");
    engine.def_property_readonly("dRmsErr", &clsTrCalc::dRmsErr,
                                 "Root mean square error of a point, metres.");
    engine.def_property_readonly("dRmsErrX", &clsTrCalc::dRmsErrX,
                                 "Root mean square error of the first coordinate, metres.");
    engine.def_property_readonly("dRmsErrY", &clsTrCalc::dRmsErrY,
                                 "Root mean square error of the second coordinate, metres.");
    engine.def_property_readonly("dMiddleErrX", &clsTrCalc::dMiddleErrX,
                                 "Mean residual of the first coordinate, metres.");
    engine.def_property_readonly("dMiddleErrY", &clsTrCalc::dMiddleErrY,
                                 "Mean residual of the second coordinate, metres.");
    AddVariable(engine, "gdErrLimit", &clsTrCalc::gdErrLimit,
                "Error limit of the adjustment dialog and of reports, metres.");
    engine.def_property_readonly(
        "TypeChanched",
        [](const py::object& self) {
            RefuseEmpty(self, typeid(clsTrCalc));
            return TypeEvent{self.cast<std::shared_ptr<clsTrCalc>>()};
        },
        "The event raised when ExcludeByIx lowers the type: TypeChanched.Subscribe(handler).");
    engine.def(
        "TrXY",
        [](const clsTrCalc& self, double dXsour, double dYsour) {
            double dXdest = 0, dYdest = 0;
            self.TrXY(Finite(dXsour, "dXsour"), Finite(dYsour, "dYsour"), dXdest, dYdest);
            return py::make_tuple(dXdest, dYdest);
        },
        arg("dXsour"), arg("dYsour"), "Transforms a point, metres: (dXdest, dYdest).");
    engine.def(
        "bTrXYArr",
        [](const clsTrCalc& self, const py::object& dX, const py::object& dY,
           const py::object& out) {
            auto [dXtr, dYtr] = TransformArrays(self.udtTrPrm(), {dX, "dX"}, {dY, "dY"}, out);
            return py::make_tuple(true, dXtr, dYtr);
        },
        arg("dX"), arg("dY"), arg("out") = py::none(),
        "Transforms two one-dimensional arrays of one length: (True, dXtr, dYtr), new arrays of\n"
        "float64. Contiguous float64 arrays are read in place. ValueError, with both shapes, when\n"
        "they do not fit, and for a coordinate that is not finite. Other threads run meanwhile.\n"
        "out, a tuple of two contiguous float64 arrays, takes the images in the place of new\n"
        "arrays, which spares repeated calls the time of getting memory.");
}

void AddFiles(Engine& engine) {
    using py::arg;
    engine.def("sListXYs", &clsTrCalc::sListXYs,
               "All pairs as text, in the format of control-point files.");
    engine.def(
        "bSaveXYs4Tr",
        [](clsTrCalc& self, const Path& sFileName) { return self.bSaveXYs4Tr(sFileName.string()); },
        arg("sFileName"),
        "Writes sListXYs() to a file. RuntimeError 52 after a failure to open was shown as a\n"
        "message, 61 when not everything could be written.");
    engine.def(
        "bLoadXYsFromFile",
        [](clsTrCalc& self, const Path& sFileXYs, bool bAppend) {
            return self.bLoadXYsFromFile(sFileXYs.string(), bAppend);
        },
        arg("sFileXYs"), arg("bAppend"),
        "Reads a control-point file into the set, behind its pairs or in their place. What cannot\n"
        "be read is shown as a message, what was read before is taken all the same; False when\n"
        "that was fewer than two pairs. Commas separate fields: see PointsMayHaveDecimalCommas.");
    const auto choose = [](auto method) {
        return [method](clsTrCalc& self, std::string sFileName, std::string sInitDir,
                        std::int32_t owner) {
            const bool chosen = (self.*method)(sFileName, sInitDir, owner);
            return py::make_tuple(chosen, sFileName, sInitDir);
        };
    };
    engine.def("bChooseFile4LoadXYs4Tr", choose(&clsTrCalc::bChooseFile4LoadXYs4Tr),
               arg("sFileName") = "", arg("sInitDir") = "", arg("Owner") = -1,
               "Asks for a control-point file to read: (chosen, sFileName, sInitDir).");
    engine.def("bChooseFile4SaveXYs4Tr", choose(&clsTrCalc::bChooseFile4SaveXYs4Tr),
               arg("sFileName") = "", arg("sInitDir") = "", arg("Owner") = -1,
               "Asks for a control-point file to write: (chosen, sFileName, sInitDir).");
    engine.def(
        "SaveLog",
        [](clsTrCalc& self, const Path& sLogFileName, std::int32_t languageId) {
            self.SaveLog(sLogFileName.string(), languageId);
        },
        arg("sLogFileName"), arg("LanguageID") = 0,
        "Writes the log of the current fit. A LanguageID other than 0 becomes the component's\n"
        "language and stays so. RuntimeError 61 when not everything could be written.");
}

}  // namespace

void AddClsTrCalc(py::module_& module) {
    AddEvent(module);
    Engine engine(
        module, "clsTrCalc",
        "The adjustment engine: holds control points, fits a transformation to those in\n"
        "use, and keeps every residual. Coordinates and residuals are metres. Trouble is\n"
        "shown as a message and the call returns normally.");
    engine.def(py::init<>());
    AddPoints(engine);
    AddFit(engine);
    AddFiles(engine);
    engine.def_property_readonly("lDebugId", &clsTrCalc::lDebugId,
                                 "The number of the object in the component's books.");
    engine.def("bDoModal", &clsTrCalc::bDoModal, py::arg("bShowApplyButton"),
               "Opens the adjustment dialog; True when the user confirmed.");
    engine.def_property(
        "sInitDir", py::cpp_function(),
        Setting("sInitDir",
                [](clsTrCalc& self, const Path& folder) { self.sInitDir(folder.string()); }),
        "The folder that the component's file choosers open in; can only be set.");
    engine.def("setLanguageID", &clsTrCalc::setLanguageID, py::arg("LanguageID"),
               "Switches the language of the whole component.");
}

}  // namespace kv_tr::python
