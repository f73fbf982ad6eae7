// The transformation types as Python enumerations, and what troubles a fit.
#include "python/enumeration.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "kv_tr/fit/fit.h"
#include "kv_tr/model/national.h"
#include "kv_tr/published/transformation_type.h"
#include "python/binding.h"

namespace kv_tr::python {
namespace {

#define KV_TR_TYPE(name) \
    { #name, name }
constexpr std::array<std::pair<const char*, enuTR_TYPE>, 36> kTypes{{
    KV_TR_TYPE(TR_METER_OL),    KV_TR_TYPE(TR_OL_METER),    KV_TR_TYPE(TR_AFFIN_5),
    KV_TR_TYPE(TR_HELMERT_3),   KV_TR_TYPE(TR_AFFIN),       KV_TR_TYPE(TR_HELMERT),
    KV_TR_TYPE(TR_POLI_1),      KV_TR_TYPE(TR_POLI_2),      KV_TR_TYPE(TR_POLI_3),
    KV_TR_TYPE(TR_POLI_4),      KV_TR_TYPE(TR_POLI_5),      KV_TR_TYPE(TR_BILINEAR),
    KV_TR_TYPE(TR_STG_HER),     KV_TR_TYPE(TR_STG_HKR),     KV_TR_TYPE(TR_STG_HDR),
    KV_TR_TYPE(TR_HER_STG),     KV_TR_TYPE(TR_HKR_STG),     KV_TR_TYPE(TR_HDR_STG),
    KV_TR_TYPE(TR_HER_HKR),     KV_TR_TYPE(TR_HKR_HER),     KV_TR_TYPE(TR_HDR_HKR),
    KV_TR_TYPE(TR_HKR_HDR),     KV_TR_TYPE(TR_BOV_EOV),     KV_TR_TYPE(TR_EOV_BOV),
    KV_TR_TYPE(TR_BOV_HKR),     KV_TR_TYPE(TR_HKR_BOV),     KV_TR_TYPE(TR_STG_BOV),
    KV_TR_TYPE(TR_BOV_STG),     KV_TR_TYPE(TR_STG_EOV_10e), KV_TR_TYPE(TR_HER_EOV_10e),
    KV_TR_TYPE(TR_HKR_EOV_10e), KV_TR_TYPE(TR_HDR_EOV_10e), KV_TR_TYPE(TR_EOV_STG_10e),
    KV_TR_TYPE(TR_EOV_HER_10e), KV_TR_TYPE(TR_EOV_HKR_10e), KV_TR_TYPE(TR_EOV_HDR_10e),
}};
#undef KV_TR_TYPE

using Word = std::pair<const char*, Type>;
constexpr std::array<Word, 12> kWords{{
    {"helmert", Type::kHelmert},
    {"affine", Type::kAffine},
    {"helmert3", Type::kHelmert3},
    {"affine5", Type::kAffine5},
    {"bilinear", Type::kBilinear},
    {"poly1", Type::kPolynomial1},
    {"poly2", Type::kPolynomial2},
    {"poly3", Type::kPolynomial3},
    {"poly4", Type::kPolynomial4},
    {"poly5", Type::kPolynomial5},
    {"fathom_to_metre", Type::kFathomToMetre},
    {"metre_to_fathom", Type::kMetreToFathom},
}};

constexpr std::array kTroubles{"none",           "no_points", "no_start",
                               "too_few_points", "singular",  "not_converged"};
static_assert(kTroubles.size() == static_cast<std::size_t>(FitTrouble::kNotConverged) + 1);

/// All types with their words; those of national types are their names.
const std::vector<Word>& AllWords() {
    static const std::vector<Word> all = [] {
        std::vector<Word> words(kWords.begin(), kWords.end());
        for (const NationalInfo& info : NationalInfos()) {
            words.emplace_back(info.name, info.type);
        }
        return words;
    }();
    return all;
}

/// An enumeration whose members are texts; the name of a word is itself in capitals.
py::object WordEnumeration(const char* name, const char* doc,
                           const std::vector<std::string>& words) {
    py::dict members;
    for (const std::string& word : words) {
        const bool lower = word.find_first_of("ABCDEFGHIJKLMNOPQRSTUVWXYZ") == word.npos;
        members[lower ? py::str(word).attr("upper")() : py::object(py::str(word))] = word;
    }
    const py::object text = py::module_::import("builtins").attr("str");
    const py::object enumeration = py::module_::import("enum").attr("Enum")(
        name, members, py::arg("module") = "kv_tr", py::arg("type") = text);
    enumeration.attr("__doc__") = doc;
    for (const char* method : {"__str__", "__format__"}) {
        py::setattr(enumeration, method, text.attr(method));
    }
    return enumeration;
}

}  // namespace

bool LoadType(py::handle source, enuTR_TYPE& type) {
    if (PyIndex_Check(source.ptr()) == 0 || py::isinstance<py::bool_>(source)) return false;
    const auto number = py::reinterpret_steal<py::object>(PyNumber_Index(source.ptr()));
    if (!number) throw py::error_already_set();
    int overflow = 0;
    const long value = PyLong_AsLongAndOverflow(number.ptr(), &overflow);
    const auto found = std::ranges::find_if(
        kTypes, [&](const auto& row) { return overflow == 0 && row.second == value; });
    if (found == kTypes.end()) {
        throw py::value_error(IntegerText(number) + " is not a transformation type (enuTR_TYPE)");
    }
    type = found->second;
    return true;
}

py::object TypeMember(enuTR_TYPE type) {
    return Module().attr("enuTR_TYPE")(static_cast<std::int32_t>(type));
}

bool LoadType(py::handle source, Type& type) {
    if (!py::isinstance<py::str>(source)) {
        enuTR_TYPE published{};
        if (!LoadType(source, published)) return false;
        type = TypeOf(published);
        return true;
    }
    const auto& words = AllWords();
    py::ssize_t length = 0;
    const char* letters = PyUnicode_AsUTF8AndSize(source.ptr(), &length);
    if (letters == nullptr) PyErr_Clear();  // lone surrogates, which no word has
    const std::string_view given(letters, static_cast<std::size_t>(length));
    const auto found = std::ranges::find(words, given, &Word::first);
    if (found == words.end()) {
        std::string known;
        for (const Word& word : kWords)
            known += (known.empty() ? "" : ", ") + std::string(word.first);
        throw py::value_error(py::repr(source).cast<std::string>() +
                              " is not a transformation type; types are " + known +
                              " and the names of NationalInfos()");
    }
    type = found->second;
    return true;
}

std::string WordOf(Type type) { return std::ranges::find(AllWords(), type, &Word::second)->first; }

py::object TypeMember(Type type) { return Module().attr("Type")(WordOf(type)); }

void AddEnumerations(py::module_& module) {
    py::dict members;
    for (const auto& [name, type] : kTypes) members[name] = static_cast<std::int32_t>(type);
    const py::object type = py::module_::import("enum").attr("IntEnum")(
        "enuTR_TYPE", members, py::arg("module") = "kv_tr");
    type.attr("__doc__") = "The type of a plane transformation.";
    module.attr("enuTR_TYPE") = type;
    for (const auto& row : kTypes) module.attr(row.first) = type.attr(row.first);

    std::vector<std::string> words;
    for (const Word& word : AllWords()) words.emplace_back(word.first);
    module.attr("Type") = WordEnumeration("Type",
                                          "The type of a plane transformation, as a word: 'poly2' "
                                          "is as good as Type.POLY2. National\n"
                                          "types have the names of NationalInfos().",
                                          words);
    module.attr("FitTrouble") = WordEnumeration(
        "FitTrouble",
        "What is wrong with a fit, as a word.\n\n"
        "none            nothing\n"
        "no_points       there are none at all: nothing was computed\n"
        "no_start        the first point lies on the centroid, where an affine5 fit cannot begin:\n"
        "                nothing was computed\n"
        "too_few_points  fewer in use than the type needs\n"
        "singular        the points in use do not determine the unknowns\n"
        "not_converged   the passes of helmert3 or affine5 did not suffice",
        {kTroubles.begin(), kTroubles.end()});
}

}  // namespace kv_tr::python
