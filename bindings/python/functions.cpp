// Functions of general use in Python.
#include <pybind11/stl/filesystem.h>

#include "kv_tr/model/national.h"
#include "kv_tr/published/decimal_commas.h"
#include "kv_tr/published/eval_tr_prm.h"
#include "kv_tr/published/formula_text.h"
#include "kv_tr/published/matrix_routines.h"
#include "kv_tr/published/ml_strings.h"
#include "kv_tr/published/number_format.h"
#include "kv_tr/text/file_names.h"
#include "python/arrays.h"
#include "python/binding.h"

namespace kv_tr::python {
namespace {

double Coordinate(const py::object& given, const char* name) {
    return Finite(Converted<double>(given, name, "a number"), name);
}

/// Whether the object is one number, not an array or a list of them: those have a length.
bool IsScalar(const py::object& given) {
    if (PyFloat_Check(given.ptr()) != 0 || PyLong_Check(given.ptr()) != 0) return true;
    if (!py::hasattr(given, "__float__")) return false;
    const bool hasLength = PyObject_Size(given.ptr()) >= 0;
    PyErr_Clear();
    return !hasLength;
}

py::tuple Evaluate(const TR_PRM& record, const py::object& first, const py::object& second,
                   const py::object& out) {
    if (IsScalar(first) && IsScalar(second)) {
        const PlanePoint image =
            EvalTrPrm(record, {Coordinate(first, "first"), Coordinate(second, "second")});
        return py::make_tuple(image.first, image.second);
    }
    auto [firstOut, secondOut] = TransformArrays(record, {first, "first"}, {second, "second"}, out);
    return py::make_tuple(firstOut, secondOut);
}

Doubles NormalMatrix(const py::object& design) {
    const Matrix observations = MatrixFrom(NumbersFrom(design, "design"));
    Matrix normal(observations.Columns(), observations.Columns());
    MatrixTimesTranspose(observations, normal);
    return ArrayFrom(normal);
}

py::tuple Inverse(const py::object& given) {
    const Doubles array = NumbersFrom(given, "matrix");
    Matrix matrix = MatrixFrom(array);
    if (matrix.Rows() != matrix.Columns()) {
        throw py::value_error("a square matrix is needed, this one has shape " + ShapeOf(array));
    }
    const bool result = MatrixInverse(matrix);
    return py::make_tuple(result, ArrayFrom(matrix));
}

Doubles Product(const py::object& matrix, const py::object& vector) {
    const Doubles factors = NumbersFrom(matrix, "matrix");
    const Doubles values = NumbersFrom(vector, "vector");
    if (factors.ndim() != 2 || values.ndim() != 1 || factors.shape(1) != values.shape(0)) {
        throw py::value_error(
            "a matrix and a vector with one value a column are needed: matrix has shape " +
            ShapeOf(factors) + ", vector has shape " + ShapeOf(values));
    }
    std::vector<double> result(static_cast<std::size_t>(factors.shape(0)));
    fMAtrix_Mul_Vector(MatrixFrom(factors), {values.data(), values.data() + values.size()}, result);
    return Doubles(static_cast<py::ssize_t>(result.size()), result.data());
}

void AddDecimalCommas(py::module_& module) {
    using Path = std::filesystem::path;
    module.def(
        "ParametersHaveDecimalCommas",
        [](const Path& fileName) { return ParametersHaveDecimalCommas(fileName.string()); },
        py::arg("fileName"),
        "Whether the numbers of a parameter file have decimal commas. clsTr's loaders say nothing\n"
        "of them: 1,304 is two numbers for that of six parameters, 1304 for that of polynomials.\n"
        "Ask first. False for a file that cannot be read or is none, here and below.");
    module.def(
        "PointsMayHaveDecimalCommas",
        [](const Path& fileName) { return PointsMayHaveDecimalCommas(fileName.string()); },
        py::arg("fileName"),
        "Whether the first lines of a control-point file look like it. clsTrCalc's loader takes\n"
        "commas as separators, too.");
}

void AddNational(py::module_& module) {
    py::class_<NationalInfo>(module, "NationalInfo",
                             "What is known of a built-in transformation between two systems.")
        .def_property_readonly(
            "type", [](const NationalInfo& info) { return PublishedType(info.type); },
            "For clsTr.udtTrPrmByDAT2M1.")
        .def_readonly("name", &NationalInfo::name, "The type without TR_, as in 'STG_EOV_10e'.")
        .def_readonly("source", &NationalInfo::source,
                      "'STG', 'HÉR', 'HKR', 'HDR', 'BOV' or 'EOV'.")
        .def_readonly("destination", &NationalInfo::destination, "Likewise.")
        .def_readonly("accuracy", &NationalInfo::accuracy,
                      "The expected error of a transformed point, root mean square over the area,\n"
                      "metres. What the given coordinates are worth comes on top.")
        .def_property_readonly(
            "area",
            [](const NationalInfo& info) {
                return info.area == NationalArea::kBudapest ? "Budapest" : "Hungary";
            },
            "Where that holds: 'Hungary', or 'Budapest' for 15 km around its centre.");
    module.def(
        "NationalInfos",
        [] {
            py::list all;
            for (const NationalInfo& info : NationalInfos()) all.append(info);
            return all;
        },
        "A NationalInfo for each national type, by ascending type.");
}

}  // namespace

void AddFunctions(py::module_& module) {
    using py::arg;
    module.def("EvalTrPrm", Evaluate, arg("record"), arg("first"), arg("second"),
               arg("out") = py::none(),
               "Maps a point, or arrays of first and second coordinates, with a record:\n"
               "(first, second), floats or new arrays of float64. Contiguous float64 arrays are\n"
               "read in place; they must be one-dimensional and of one length (else ValueError,\n"
               "with both shapes), coordinates finite. out takes the images of arrays, as in\n"
               "clsTrCalc.bTrXYArr. Metres. Other threads run meanwhile.");
    module.def("PolyFormulaText", PolyFormulaText, arg("eType"),
               "The terms above order 1 of the first coordinate, as listings print them.");
    module.def("MatrixTimesTranspose", NormalMatrix, arg("design"),
               "The normal matrix, transposed design times design, of r rows and c columns: a new\n"
               "array of c rows and c columns.");
    module.def("MatrixInverse", Inverse, arg("matrix"),
               "(True, the inverse of a square matrix) by Gauss-Jordan elimination. True also for\n"
               "a singular matrix, which is shown as a message. Exact for symmetric positive\n"
               "definite matrices and for sizes up to 3, not for every larger one.");
    module.def("fMAtrix_Mul_Vector", Product, arg("matrix"), arg("vector"),
               "A matrix of r rows and c columns times a vector of c values: a new array of r.");
    module.def(
        "FormatFixed", FormatFixed, arg("dValue"), arg("nDecimals"), arg("nWidth"),
        "The value with nDecimals decimals, rounded half away from zero, padded with blanks\n"
        "on the left to nWidth characters (both 0 to 255).");
    module.def("FormatSci", FormatSci, arg("dValue"),
               "The value with 16 digits and exponent, padded on the left to 30 characters.");
    module.def("PadLeft", PadLeft, arg("sText"), arg("nWidth"),
               "The text with blanks on the left up to nWidth columns (0 to 255).");
    module.def("CleanNumberLine", CleanNumberLine, arg("sLine"), arg("bCommaIsDecimal"),
               "Turns apostrophes, commas (into a point if bCommaIsDecimal), semicolons, tabs and\n"
               "double quotes into blanks, and leaves single blanks between the fields.");
    module.def("GetFileExt", GetFileExt, arg("sPath"), "The text after the last dot.");
    module.def("StripFileExt", StripFileExt, arg("sName"), "The text before the last dot.");
    module.def("GetFolderPart", GetFolderPart, arg("sPath"),
               "The text before the last folder separator; the whole text when there is none.");
    module.def("GetFileTitle", GetFileTitle, arg("sPath"), arg("bWithExt"),
               "The name of a file without its folder, and without extension unless bWithExt.");
    module.def("GetMlString", GetMlString, arg("id"), arg("sDefault") = "",
               "The text of an id in the current language; the default is not used.\n"
               "RuntimeError 326 for an id that no string table has.");
    AddDecimalCommas(module);
    AddNational(module);
    module.def("DecimalSeparator", py::overload_cast<>(&DecimalSeparator),
               "The decimal separator of everything written, '.' or ','.");
    module.def(
        "DecimalSeparator",
        [](const std::string& separator) {
            if (separator != "." && separator != ",") {
                throw py::value_error("the decimal separator is '.' or ',', not '" + separator +
                                      "'");
            }
            DecimalSeparator(separator[0]);
        },
        arg("separator"), "Sets it; the package begins with the point.");
}

}  // namespace kv_tr::python
