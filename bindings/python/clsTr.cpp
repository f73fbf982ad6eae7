// clsTr in Python.
#include "kv_tr/published/clsTr.h"

#include <pybind11/stl.h>
#include <pybind11/stl/filesystem.h>

#include <array>
#include <limits>

#include "python/binding.h"

namespace kv_tr::python {
namespace {

using Path = std::filesystem::path;
using TransformationClass = py::class_<clsTr>;

constexpr double kNothing = std::numeric_limits<double>::quiet_NaN();

void AddRecordMembers(TransformationClass& type) {
    using py::arg;
    type.def_property_readonly("lNumberOfParameters", &clsTr::lNumberOfParameters,
                               "How many coefficients a coordinate a fit solves for; 0 for every\n"
                               "type without a fixed number, Helmert and affine included.");
    type.def_property("udtTrPrm", py::overload_cast<>(&clsTr::udtTrPrm, py::const_),
                      Setting("udtTrPrm", py::overload_cast<const TR_PRM&>(&clsTr::udtTrPrm)),
                      "A copy of the whole record, which is another than the engine's. Changing\n"
                      "the copy changes nothing until it is assigned.");
    type.def_property("udtTrAffinPrm", py::cpp_function(),
                      Setting("udtTrAffinPrm", &clsTr::udtTrAffinPrm),
                      "Sets type and six coefficients; the other coefficients stay.");
    type.def_property("udtTrPrmByDAT2M1", py::cpp_function(),
                      Setting("udtTrPrmByDAT2M1", &clsTr::udtTrPrmByDAT2M1),
                      "Sets the built-in record of a national type; any other type changes\n"
                      "nothing.");
    type.def("bLoadByDAT2M1", &clsTr::bLoadByDAT2M1,
             "Lets the user choose a national type and takes its record. Always False: the type\n"
             "tells what happened. Choosing TR_HER_STG loads TR_STG_HKR.");
    for (const auto& [name, method] : {std::pair{"bGetAffinPrm", &clsTr::bGetAffinPrm},
                                       {"bGetHelmertPrm", &clsTr::bGetHelmertPrm}}) {
        type.def(
            name,
            [method = method](const clsTr& self) {
                std::array<double, 6> c;
                c.fill(kNothing);
                const bool linear = (self.*method)(c[0], c[1], c[2], c[3], c[4], c[5]);
                return py::make_tuple(linear, c[0], c[1], c[2], c[3], c[4], c[5]);
            },
            "(True, a0, a1, a2, b0, b1, b2); False and nan for a polynomial record.");
    }
    type.def(
        "bGetInversePrm",
        [](const clsTr& self) {
            AFFIN_PRM inverse{
                self.udtTrPrm().eType, kNothing, kNothing, kNothing, kNothing, kNothing, kNothing};
            const bool linear = self.bGetInversePrm(inverse);
            return py::make_tuple(linear, inverse);
        },
        "(True, the record that maps back); False and coefficients of nan for a polynomial\n"
        "record. RuntimeError 11 for a record that has no inverse.");
    type.def_property_readonly("sTrTypeName", &clsTr::sTrTypeName,
                               "The name of the type in the current language.");
    type.def("bTypeIsPolinom", &clsTr::bTypeIsPolinom,
             "Whether the type is 1 or more: polynomials, bilinear and national types.");
    type.def(
        "TrXY",
        [](const clsTr& self, double dX, double dY) {
            double dXtr = 0, dYtr = 0;
            self.TrXY(Finite(dX, "dX"), Finite(dY, "dY"), dXtr, dYtr);
            return py::make_tuple(dXtr, dYtr);
        },
        arg("dX"), arg("dY"),
        "Transforms a point, metres: (dXtr, dYtr). For many use EvalTrPrm(tr.udtTrPrm, ...).");
    type.def(
        "TrAngle",
        [](const clsTr& self, double dAngle, double dX, double dY, double dLength) {
            double dAngleTr = 0;
            self.TrAngle(Finite(dAngle, "dAngle"), dAngleTr, Finite(dX, "dX"), Finite(dY, "dY"),
                         Finite(dLength, "dLength"));
            return dAngleTr;
        },
        arg("dAngle"), arg("dX"), arg("dY"), arg("dLength") = 100.0,
        "Transforms a direction (radians, from the first axis towards the second) at a point, as\n"
        "that of a vector of dLength metres, into [0, 2 pi). Differences are in single precision.");
}

void AddFiles(TransformationClass& type) {
    using py::arg;
    const auto choose = [](auto method) {
        return
            [method](clsTr& self, std::string sFileName, std::string sInitDir, std::int32_t owner) {
                const bool chosen = (self.*method)(sFileName, sInitDir, owner);
                return py::make_tuple(chosen, sFileName, sInitDir);
            };
    };
    for (const auto& [name, method] :
         {std::pair{"bChooseFile4LoadAffinTrPrm", &clsTr::bChooseFile4LoadAffinTrPrm},
          {"bChooseFile4SaveAffinTrPrm", &clsTr::bChooseFile4SaveAffinTrPrm},
          {"bChooseFile4LoadPoliTrPrm", &clsTr::bChooseFile4LoadPoliTrPrm},
          {"bChooseFile4SavePoliTrPrm", &clsTr::bChooseFile4SavePoliTrPrm}}) {
        type.def(name, choose(method), arg("sFileName") = "", arg("sInitDir") = "",
                 arg("Owner") = -1,
                 "Asks for a parameter file; neither reads nor writes it: (chosen, sFileName,\n"
                 "sInitDir). The name is empty after a cancel.");
    }
    type.def(
        "bChooseFileAndSaveTrPrm",
        [](clsTr& self, std::string sFileName, std::string sInitDir, std::int32_t owner) {
            self.bChooseFileAndSaveTrPrm(sFileName, sInitDir, owner);
            return py::make_tuple(sFileName, sInitDir);
        },
        arg("sFileName") = "", arg("sInitDir") = "", arg("Owner") = -1,
        "Asks for a file name that suits the record and saves to it: (sFileName, sInitDir).");
    type.def(
        "bSaveAffinTrPrm",
        [](clsTr& self, const Path& sFileTrPrm, bool bItr25Format) {
            return self.bSaveAffinTrPrm(sFileTrPrm.string(), bItr25Format);
        },
        arg("sFileTrPrm"), arg("bItr25Format") = false,
        "Saves six parameters; False for a polynomial record and for a file that does not open.\n"
        "RuntimeError 61 when not everything could be written.");
    type.def(
        "bLoadAffinTrPrmFromFile",
        [](clsTr& self, const Path& sFileTrPrm, bool bItr25Format) {
            return self.bLoadAffinTrPrmFromFile(sFileTrPrm.string(), bItr25Format);
        },
        arg("sFileTrPrm"), arg("bItr25Format") = false,
        "Loads six parameters. A polynomial record becomes TR_AFFIN first, any other keeps its\n"
        "type. False, after a message, when the file holds something else; True for a file that\n"
        "does not open, which is shown as a message. Commas separate numbers: see\n"
        "ParametersHaveDecimalCommas.");
    type.def(
        "bLoadPoliTrPrmFromFile",
        [](clsTr& self, const Path& sFileTrPrm) {
            return self.bLoadPoliTrPrmFromFile(sFileTrPrm.string());
        },
        arg("sFileTrPrm"),
        "Loads a polynomial; False when the number of coefficient lines is that of no type. "
        "Commas\n"
        "count for nothing, 1,304 is read as 1304: see ParametersHaveDecimalCommas.");
    type.def(
        "bSavePoliTrPrm",
        [](clsTr& self, const Path& sFileTrPrm, const std::optional<std::string>& vTitle) {
            return self.bSavePoliTrPrm(sFileTrPrm.string(), vTitle);
        },
        arg("sFileTrPrm"), arg("vTitle") = py::none(),
        "Saves the polynomial listing; False for a record of six parameters. True also for a file\n"
        "that does not open, which is shown as a message. RuntimeError 61 when not everything\n"
        "could be written.");
    type.def("sListHelmertTrPrm", &clsTr::sListHelmertTrPrm, arg("vTitle") = py::none(),
             "Six parameters and their formula as text; empty for a polynomial record.");
    type.def("sListPoliTrPrm", &clsTr::sListPoliTrPrm, arg("vTitle") = py::none(),
             "Title, origin and coefficients of a polynomial as text; empty for six parameters.");
}

void AddDialogs(TransformationClass& type) {
    type.def("bChooseTrPrm", &clsTr::bChooseTrPrm,
             "Lets the user say where parameters come from, and takes them.");
    type.def("bShowAffinTrPrm", &clsTr::bShowAffinTrPrm,
             "Shows six parameters for editing; True when the user confirmed.");
    type.def("bShowPoliTrPrm", &clsTr::bShowPoliTrPrm,
             "Shows polynomial parameters as text; True when the user confirmed.");
    type.def("bShowXYs4Tr", &clsTr::bShowXYs4Tr, py::arg("sTitle") = "",
             "Shows the engine's control points as text; True when the user confirmed.");
}

}  // namespace

void AddClsTr(py::module_& module) {
    TransformationClass type(
        module, "clsTr",
        "Holds the parameters of one transformation, applies, lists, saves and loads them, and\n"
        "owns an adjustment engine. Coordinates are metres, directions radians. A new one is the\n"
        "identity. In a with statement it is torn down at the end.");
    type.def(py::init<>());
    AddVariable(type, "gName", &clsTr::gName, "Folder of the parameter file loaded last.");
    AddVariable(type, "gId", &clsTr::gId, "A number of the host's own.");
    for (const auto& [name, member] : {std::pair{"PI", &clsTr::PI},
                                       {"RAD_90", &clsTr::RAD_90},
                                       {"RAD_180", &clsTr::RAD_180},
                                       {"RAD_270", &clsTr::RAD_270},
                                       {"RAD_360", &clsTr::RAD_360}}) {
        AddVariable(type, name, member, "What TrAngle folds directions with, radians.");
    }
    type.def_property_readonly("lDebugId", &clsTr::lDebugId,
                               "The number of the object in the component's books.");
    type.def("TearDown", &clsTr::TearDown, "Lets the engine go.");
    type.def("__enter__", [](py::object self) { return self; });
    type.def("__exit__", [](clsTr& self, const py::args&) { self.TearDown(); });
    type.def_property_readonly("oCalcTr", &clsTr::oCalcTr,
                               "The engine itself. RuntimeError 91 after TearDown.");
    type.def_property(
        "sInitDir", py::cpp_function(),
        Setting("sInitDir",
                [](clsTr& self, const Path& folder) { self.sInitDir(folder.string()); }),
        "The folder that the component's file choosers open in; can only be set.");
    AddRecordMembers(type);
    AddFiles(type);
    AddDialogs(type);
}

}  // namespace kv_tr::python
