// The published records as Python classes.
#include <cmath>
#include <cstring>
#include <functional>

#include "python/binding.h"

namespace kv_tr::python {
namespace {

/// How one field of a record is read and written from Python.
template <class Record>
struct Field {
    std::string name;
    std::function<py::object(const Record&)> get;
    std::function<void(Record&, const py::object&)> set;
};

/// A number at a place in the record; the records are packed, so it is copied byte by byte.
template <class Record>
Field<Record> Number(const std::string& name, std::size_t offset) {
    return {name,
            [offset](const Record& record) -> py::object {
                double value = 0;
                const auto* bytes = reinterpret_cast<const std::byte*>(&record);
                std::memcpy(&value, bytes + offset, sizeof value);
                return py::float_(value);
            },
            [name, offset](Record& record, const py::object& given) {
                const auto value = Converted<double>(given, name, "a number");
                std::memcpy(reinterpret_cast<std::byte*>(&record) + offset, &value, sizeof value);
            }};
}

/// A field of another type, which Python's own conversion must yield.
template <class Record, class Value, class Stored>
Field<Record> Other(const std::string& name, const char* wanted, Stored Record::*member) {
    return {name, [member](const Record& r) { return py::cast(Value(r.*member)); },
            [name, wanted, member](Record& record, const py::object& given) {
                record.*member = Converted<Value>(given, name, wanted);
            }};
}

template <class Record>
using Fields = std::vector<Field<Record>>;

template <class Record>
Record FromArguments(const char* name, const Fields<Record>& fields, const py::args& values,
                     const py::kwargs& named) {
    if (values.size() > fields.size()) {
        throw py::type_error(std::string(name) + " has " + std::to_string(fields.size()) +
                             " fields, " + std::to_string(values.size()) + " values were given");
    }
    Record record;
    for (std::size_t i = 0; i < values.size(); ++i) fields[i].set(record, values[i]);
    for (const auto& [key, value] : named) {
        const std::string given = py::str(key);
        std::size_t i = 0;
        while (i < fields.size() && fields[i].name != given) ++i;
        if (i == fields.size()) {
            throw py::type_error(std::string(name) + " has no field '" + given + "'");
        }
        if (i < values.size()) throw py::type_error(given + " was given twice");
        fields[i].set(record, py::reinterpret_borrow<py::object>(value));
    }
    return record;
}

template <class Record>
py::tuple ValuesOf(const Fields<Record>& fields, const Record& record) {
    py::tuple values(fields.size());
    for (std::size_t i = 0; i < fields.size(); ++i) values[i] = fields[i].get(record);
    return values;
}

/// The call that makes the record again; fields that have their default are left out.
template <class Record>
std::string Representation(const char* name, const Fields<Record>& fields, const Record& record) {
    std::string text = std::string(name) + "(";
    const Record fresh;
    for (const auto& field : fields) {
        const py::object value = field.get(record);
        if (value.equal(field.get(fresh))) continue;
        if (text.back() != '(') text += ", ";
        const bool isType = field.name == "eType";
        const py::object shown = isType ? py::object(value.attr("name")) : py::repr(value);
        text += field.name + "=" + shown.cast<std::string>();
    }
    return text + ")";
}

template <class Record>
void AddRecord(py::module_& module, const char* name, const char* doc,
               const Fields<Record>& fields) {
    py::class_<Record> type(module, name, doc);
    type.def(py::init([name, fields](const py::args& values, const py::kwargs& named) {
        return FromArguments(name, fields, values, named);
    }));
    for (const auto& field : fields) type.def_property(field.name.c_str(), field.get, field.set);
    type.def("__repr__",
             [name, fields](const Record& record) { return Representation(name, fields, record); });
    type.def(
        "__eq__",
        [fields](const Record& one, const Record& other) {
            return ValuesOf(fields, one).equal(ValuesOf(fields, other));
        },
        py::is_operator());
    type.def(py::pickle([fields](const Record& record) { return ValuesOf(fields, record); },
                        [name, fields](const py::tuple& values) {
                            return FromArguments(name, fields, py::args(values), py::kwargs());
                        }));
}

/// A pair from a tuple of its fields; complaints say at which place it was given.
typeXYs4Tr PairFrom(const py::object& type, const py::tuple& values, const std::string& place) {
    constexpr std::size_t kNeeded = 5;
    if (values.size() < kNeeded) {
        throw py::type_error(place + " must have an identifier and four coordinates, it has " +
                             std::to_string(values.size()) + " fields");
    }
    try {
        return type(*values).cast<typeXYs4Tr>();
    } catch (py::error_already_set& error) {
        const auto text = place + ": " + py::str(error.value()).cast<std::string>();
        py::raise_from(error, error.type().ptr(), text.c_str());
        throw py::error_already_set();
    }
}

}  // namespace

std::string TypeNameOf(py::handle object) {
    return py::str(py::type::handle_of(object).attr("__name__")).cast<std::string>();
}

double Finite(double value, const std::string& name) {
    if (std::isfinite(value)) return value;
    const char* text = std::isnan(value) ? "nan" : value > 0 ? "inf" : "-inf";
    throw py::value_error(name + " is " + text + "; coordinates must be finite numbers");
}

std::vector<typeXYs4Tr> PairsFrom(const py::iterable& given) {
    const py::object type = Module().attr("typeXYs4Tr");
    std::vector<typeXYs4Tr> pairs;
    for (const py::handle item : given) {
        const std::string place = "tXY4Tr[" + std::to_string(pairs.size()) + "]";
        if (py::isinstance<py::tuple>(item)) {
            pairs.push_back(PairFrom(type, py::reinterpret_borrow<py::tuple>(item), place));
        } else if (py::isinstance<typeXYs4Tr>(item)) {
            pairs.push_back(item.cast<const typeXYs4Tr&>());
        } else {
            throw py::type_error(place + " must be typeXYs4Tr or a tuple of its fields, not " +
                                 TypeNameOf(item));
        }
        const typeXYs4Tr& pair = pairs.back();
        const std::string point = place + " (point '" + pair.sId + "'): ";
        Finite(pair.dXsour, point + "dXsour");
        Finite(pair.dYsour, point + "dYsour");
        Finite(pair.dXdest, point + "dXdest");
        Finite(pair.dYdest, point + "dYdest");
    }
    return pairs;
}

void AddRecords(py::module_& module) {
    Fields<TR_PRM> parameters{
        Other<TR_PRM, enuTR_TYPE>("eType", "a transformation type", &TR_PRM::eType)};
    for (const auto& [series, start] :
         {std::pair{"dA", offsetof(TR_PRM, dA0)}, {"dB", offsetof(TR_PRM, dB0)}}) {
        for (std::size_t k = 0; k < 22; ++k) {
            parameters.push_back(
                Number<TR_PRM>(series + std::to_string(k), start + k * sizeof(double)));
        }
    }
    AddRecord<TR_PRM>(
        module, "TR_PRM",
        "The parameters of a transformation: eType, dA0 to dA21, dB0 to dB21.\n\n"
        "Below TR_POLI_1 the first coordinate becomes dA0 + dA1 first + dA2 second, the second\n"
        "likewise with dB. From TR_POLI_1 up dA0 and dB0 are subtracted from the source first and\n"
        "dA1, dA2, ... multiply 1, u, v, u*u, u*v, v*v, ... Fields that are not given are 0.",
        parameters);

    const auto affine = [](const char* name, std::size_t offset) {
        return Number<AFFIN_PRM>(name, offset);
    };
    AddRecord<AFFIN_PRM>(
        module, "AFFIN_PRM",
        "Six parameters, in the published order eType, dA0, dA1, dA2, dB1, dB0, dB2:\n"
        "dB1 stands before dB0, so name the fields. They mean what those of TR_PRM mean.",
        {Other<AFFIN_PRM, enuTR_TYPE>("eType", "a transformation type", &AFFIN_PRM::eType),
         affine("dA0", offsetof(AFFIN_PRM, dA0)), affine("dA1", offsetof(AFFIN_PRM, dA1)),
         affine("dA2", offsetof(AFFIN_PRM, dA2)), affine("dB1", offsetof(AFFIN_PRM, dB1)),
         affine("dB0", offsetof(AFFIN_PRM, dB0)), affine("dB2", offsetof(AFFIN_PRM, dB2))});

    const auto pair = [](const char* name, std::size_t offset) {
        return Number<typeXYs4Tr>(name, offset);
    };
    AddRecord<typeXYs4Tr>(
        module, "typeXYs4Tr",
        "A control point: identifier, source and destination coordinates, the residuals of the\n"
        "last fit (computed minus measured), all in metres, and whether it is left out of the\n"
        "fit. The fields named X hold the first coordinate, which listings call Y.",
        {Other<typeXYs4Tr, std::string>("sId", "str", &typeXYs4Tr::sId),
         pair("dXsour", offsetof(typeXYs4Tr, dXsour)), pair("dYsour", offsetof(typeXYs4Tr, dYsour)),
         pair("dXdest", offsetof(typeXYs4Tr, dXdest)), pair("dYdest", offsetof(typeXYs4Tr, dYdest)),
         pair("dXerr", offsetof(typeXYs4Tr, dXerr)), pair("dYerr", offsetof(typeXYs4Tr, dYerr)),
         Other<typeXYs4Tr, bool>("bNotUsed", "bool", &typeXYs4Tr::bNotUsed)});
}

}  // namespace kv_tr::python
