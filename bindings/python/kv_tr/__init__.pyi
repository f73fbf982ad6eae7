import builtins
import datetime
import enum
import os
from collections.abc import Callable, Hashable, Iterable, MutableMapping, Sequence
from dataclasses import dataclass
from typing import Any, Final, Generic, Literal, NamedTuple, TypeVar, overload

import numpy as np
from numpy.typing import ArrayLike, NDArray

__version__: Final[str]

_Path = str | os.PathLike[str]
_Doubles = NDArray[np.float64]
_Pair = typeXYs4Tr | tuple[str, float, float, float, float]
_Format = Literal[
    "json",
    "proj",
    "proj-helmert",
    "wkt2",
    "world",
    "geotransform",
    "cad-world",
    "gcps",
    "sheet",
    "c",
    "python",
    "sql",
    "formulas",
]
_SixParameters = tuple[bool, float, float, float, float, float, float]

_Value = TypeVar("_Value")

class _WriteOnly(Generic[_Value]):
    """A property that can be set; reading it is AttributeError."""

    def __set__(self, instance: object, value: _Value) -> None: ...

class enuTR_TYPE(enum.IntEnum):
    TR_METER_OL = -5
    TR_OL_METER = -4
    TR_AFFIN_5 = -3
    TR_HELMERT_3 = -2
    TR_AFFIN = -1
    TR_HELMERT = 0
    TR_POLI_1 = 1
    TR_POLI_2 = 2
    TR_POLI_3 = 3
    TR_POLI_4 = 4
    TR_POLI_5 = 5
    TR_BILINEAR = 6
    TR_STG_HER = 10
    TR_STG_HKR = 11
    TR_STG_HDR = 12
    TR_HER_STG = 13
    TR_HKR_STG = 14
    TR_HDR_STG = 15
    TR_HER_HKR = 16
    TR_HKR_HER = 17
    TR_HDR_HKR = 18
    TR_HKR_HDR = 19
    TR_BOV_EOV = 20
    TR_EOV_BOV = 21
    TR_BOV_HKR = 22
    TR_HKR_BOV = 23
    TR_STG_BOV = 24
    TR_BOV_STG = 25
    TR_STG_EOV_10e = 26
    TR_HER_EOV_10e = 27
    TR_HKR_EOV_10e = 28
    TR_HDR_EOV_10e = 29
    TR_EOV_STG_10e = 30
    TR_EOV_HER_10e = 31
    TR_EOV_HKR_10e = 32
    TR_EOV_HDR_10e = 33

TR_METER_OL: Final = enuTR_TYPE.TR_METER_OL
TR_OL_METER: Final = enuTR_TYPE.TR_OL_METER
TR_AFFIN_5: Final = enuTR_TYPE.TR_AFFIN_5
TR_HELMERT_3: Final = enuTR_TYPE.TR_HELMERT_3
TR_AFFIN: Final = enuTR_TYPE.TR_AFFIN
TR_HELMERT: Final = enuTR_TYPE.TR_HELMERT
TR_POLI_1: Final = enuTR_TYPE.TR_POLI_1
TR_POLI_2: Final = enuTR_TYPE.TR_POLI_2
TR_POLI_3: Final = enuTR_TYPE.TR_POLI_3
TR_POLI_4: Final = enuTR_TYPE.TR_POLI_4
TR_POLI_5: Final = enuTR_TYPE.TR_POLI_5
TR_BILINEAR: Final = enuTR_TYPE.TR_BILINEAR
TR_STG_HER: Final = enuTR_TYPE.TR_STG_HER
TR_STG_HKR: Final = enuTR_TYPE.TR_STG_HKR
TR_STG_HDR: Final = enuTR_TYPE.TR_STG_HDR
TR_HER_STG: Final = enuTR_TYPE.TR_HER_STG
TR_HKR_STG: Final = enuTR_TYPE.TR_HKR_STG
TR_HDR_STG: Final = enuTR_TYPE.TR_HDR_STG
TR_HER_HKR: Final = enuTR_TYPE.TR_HER_HKR
TR_HKR_HER: Final = enuTR_TYPE.TR_HKR_HER
TR_HDR_HKR: Final = enuTR_TYPE.TR_HDR_HKR
TR_HKR_HDR: Final = enuTR_TYPE.TR_HKR_HDR
TR_BOV_EOV: Final = enuTR_TYPE.TR_BOV_EOV
TR_EOV_BOV: Final = enuTR_TYPE.TR_EOV_BOV
TR_BOV_HKR: Final = enuTR_TYPE.TR_BOV_HKR
TR_HKR_BOV: Final = enuTR_TYPE.TR_HKR_BOV
TR_STG_BOV: Final = enuTR_TYPE.TR_STG_BOV
TR_BOV_STG: Final = enuTR_TYPE.TR_BOV_STG
TR_STG_EOV_10e: Final = enuTR_TYPE.TR_STG_EOV_10e
TR_HER_EOV_10e: Final = enuTR_TYPE.TR_HER_EOV_10e
TR_HKR_EOV_10e: Final = enuTR_TYPE.TR_HKR_EOV_10e
TR_HDR_EOV_10e: Final = enuTR_TYPE.TR_HDR_EOV_10e
TR_EOV_STG_10e: Final = enuTR_TYPE.TR_EOV_STG_10e
TR_EOV_HER_10e: Final = enuTR_TYPE.TR_EOV_HER_10e
TR_EOV_HKR_10e: Final = enuTR_TYPE.TR_EOV_HKR_10e
TR_EOV_HDR_10e: Final = enuTR_TYPE.TR_EOV_HDR_10e

# The modern interface: values and functions.

class Type(str, enum.Enum):
    HELMERT = "helmert"
    AFFINE = "affine"
    HELMERT3 = "helmert3"
    AFFINE5 = "affine5"
    BILINEAR = "bilinear"
    POLY1 = "poly1"
    POLY2 = "poly2"
    POLY3 = "poly3"
    POLY4 = "poly4"
    POLY5 = "poly5"
    FATHOM_TO_METRE = "fathom_to_metre"
    METRE_TO_FATHOM = "metre_to_fathom"
    STG_HER = "STG_HER"
    STG_HKR = "STG_HKR"
    STG_HDR = "STG_HDR"
    HER_STG = "HER_STG"
    HKR_STG = "HKR_STG"
    HDR_STG = "HDR_STG"
    HER_HKR = "HER_HKR"
    HKR_HER = "HKR_HER"
    HDR_HKR = "HDR_HKR"
    HKR_HDR = "HKR_HDR"
    BOV_EOV = "BOV_EOV"
    EOV_BOV = "EOV_BOV"
    BOV_HKR = "BOV_HKR"
    HKR_BOV = "HKR_BOV"
    STG_BOV = "STG_BOV"
    BOV_STG = "BOV_STG"
    STG_EOV_10e = "STG_EOV_10e"
    HER_EOV_10e = "HER_EOV_10e"
    HKR_EOV_10e = "HKR_EOV_10e"
    HDR_EOV_10e = "HDR_EOV_10e"
    EOV_STG_10e = "EOV_STG_10e"
    EOV_HER_10e = "EOV_HER_10e"
    EOV_HKR_10e = "EOV_HKR_10e"
    EOV_HDR_10e = "EOV_HDR_10e"

_Solution = Literal["documented", "accurate"]
_TypeLike = Type | enuTR_TYPE | str  # Type is a str, too; named for whoever reads the stub

class FitTrouble(str, enum.Enum):
    NONE = "none"
    NO_POINTS = "no_points"
    NO_START = "no_start"
    TOO_FEW_POINTS = "too_few_points"
    SINGULAR = "singular"
    NOT_CONVERGED = "not_converged"

class FileError(Exception):
    file: str
    line: int | None
    cause: str
    def __init__(self, file: str, line: int | None, cause: str) -> None: ...

class NoInverseError(ValueError): ...

class FitError(ValueError):
    result: FitResult
    def __init__(self, result: FitResult) -> None: ...

class FitWarning(UserWarning): ...
class NoInverseWarning(UserWarning): ...

class Transformation:
    def __init__(self, type: _TypeLike, a: ArrayLike, b: ArrayLike) -> None: ...
    @property
    def type(self) -> Type: ...
    @property
    def a(self) -> tuple[float, ...]: ...
    @property
    def b(self) -> tuple[float, ...]: ...
    def transform(self, xy: ArrayLike, out: _Doubles | None = None) -> _Doubles: ...
    def direction(self, angle: float, at: ArrayLike) -> float: ...
    def inverse(self) -> Transformation | ExactInverse: ...
    def distortion(self, xy: ArrayLike) -> Distortion: ...
    def sigma(self, xy: ArrayLike) -> _Doubles: ...
    def covariance(self, xy: ArrayLike) -> _Doubles: ...
    def extrapolation(self, xy: ArrayLike) -> Extrapolation: ...
    def save(self, path: _Path) -> None: ...
    @staticmethod
    def load(
        path: _Path, decimal_comma: bool = False, type: _TypeLike | None = None
    ) -> Transformation: ...
    def to_text(
        self, format: _Format, *, axes: str = "en", source_crs: str = "", target_crs: str = ""
    ) -> str: ...
    @staticmethod
    def from_text(
        text: str, format: _Format | None = None, type: _TypeLike | None = None
    ) -> Transformation: ...
    @staticmethod
    def national(name: str) -> Transformation: ...
    @staticmethod
    def fathom_to_metre() -> Transformation: ...
    @staticmethod
    def metre_to_fathom() -> Transformation: ...
    def __eq__(self, other: object) -> bool: ...
    def __hash__(self) -> int: ...
    def __copy__(self) -> Transformation: ...
    def __deepcopy__(self, memo: dict[int, Any], /) -> Transformation: ...

class ExactInverse:
    @property
    def forward(self) -> Transformation: ...
    @property
    def domain(self) -> tuple[tuple[float, float], tuple[float, float]] | None: ...
    def transform(self, xy: ArrayLike, out: _Doubles | None = None) -> _Doubles: ...
    def reasons(self, xy: ArrayLike) -> NDArray[np.str_]: ...
    def __eq__(self, other: object) -> bool: ...
    def __hash__(self) -> int: ...
    def __copy__(self) -> ExactInverse: ...
    def __deepcopy__(self, memo: dict[int, Any], /) -> ExactInverse: ...

@dataclass(frozen=True, eq=False)
class Distortion:
    greatest_scale: _Doubles
    least_scale: _Doubles
    area_scale: _Doubles
    rotation: _Doubles
    greatest_angle_change: _Doubles
    direction_source: _Doubles
    direction_target: _Doubles

@dataclass(frozen=True)
class WeakGeometry:
    kind: Literal["places", "curve", "groups", "few_points", "spread"]
    order: int
    count: int
    needed: int
    distance: float

@dataclass(frozen=True)
class TruthCheck:
    level: Literal["verified", "note", "warning", "severe"]
    e_points: float
    e_hull: float
    evaluation_noise: float
    condition: float
    rank: int
    unknowns: int
    redundancy: int
    sigma0: float
    hull_factor: float
    weakest: tuple[float, float]
    undetermined: bool
    other_minimum: bool
    origin_distance: float
    cause: WeakGeometry | None

@dataclass(frozen=True)
class Finding:
    id: str
    name: str
    severity: Literal["note", "warning", "severe"]
    text: str
    numbers: dict[str, float]
    cause: Literal["origin", "conditioned", "iteration", "other_minimum", "geometry"] | None
    geometry: WeakGeometry | None
    place: tuple[float, float] | None
    point: Hashable | None
    offer: Literal["accurate", "type", "exclude", "delete_excluded"] | None
    offered_type: Type | None

class Estimate(NamedTuple):
    value: float
    sigma: float

@dataclass(frozen=True, eq=False)
class Parameters:
    names: tuple[str, ...]
    values: _Doubles
    sigmas: _Doubles
    at_edge: _Doubles
    sigmas_at_edge: _Doubles

@dataclass(frozen=True, eq=False)
class Centroid:
    source: _Doubles
    target: _Doubles
    sigma: _Doubles

@dataclass(frozen=True)
class GlobalTest:
    value: float
    lower: float
    upper: float
    p: float
    passes: bool

@dataclass(frozen=True)
class CriticalValues:
    w: float
    tau: float
    t: float
    F: float

@dataclass(frozen=True, eq=False)
class PointFigures:
    residual: _Doubles
    redundancy: _Doubles
    normalised: _Doubles
    tau: _Doubles
    t: _Doubles
    t_p: _Doubles
    t_separate: _Doubles
    F: _Doubles
    p: _Doubles
    adjusted_p: _Doubles
    gross_error: _Doubles
    mdb: _Doubles
    cook: _Doubles
    lever: NDArray[np.bool_]

@dataclass(frozen=True, eq=False)
class Adjustment:
    determined: bool
    fits_exactly: bool
    used: int
    unknowns: int
    redundancy: int
    sum_pvv: float
    sigma0: float
    sigma0_separate: _Doubles
    rms_point: float
    press: float
    loo: float
    uncontrolled: int
    aicc: float
    axes_p: float
    global_test: GlobalTest | None
    parameters: Parameters
    correlations: _Doubles
    derived: dict[str, Estimate]
    centroid: Centroid
    points: PointFigures
    critical: CriticalValues
    suspect: Hashable | None
    returnable: tuple[Hashable, ...]

@dataclass(frozen=True)
class TypeFigures:
    type: Type
    determined: bool
    eligible: bool
    redundancy: int
    sigma0: float
    loo: float
    excess: float
    aicc: float
    F: float
    F_p: float
    passes_global_test: bool

@dataclass(frozen=True)
class TypeAdvice:
    types: tuple[TypeFigures, ...]
    best: Type | None
    advised: Type | None
    simplest_passing: Type | None

@dataclass(frozen=True)
class Extrapolation:
    count: int
    farthest: float
    sigma: float
    is_far: bool

@dataclass(frozen=True, eq=False)
class ControlPoints:
    ids: tuple[str, ...]
    source: _Doubles
    target: _Doubles
    sigma: _Doubles | None = None
    used: NDArray[np.bool_] | None = None
    def __len__(self) -> int: ...
    def __eq__(self, other: object) -> bool: ...

_PointFormat = Literal[
    "listing", "csv", "qgis", "gcp", "vrt", "link", "cad", "grass", "geojson"
]

def read_points(
    path: _Path,
    decimal_comma: bool = False,
    sigmas: bool = False,
    format: _PointFormat | None = None,
    *,
    axes: str = "en",
) -> ControlPoints: ...
def write_points(
    path: _Path,
    points: ControlPoints,
    format: _PointFormat | None = None,
    *,
    axes: str = "en",
) -> None: ...

class Statistics(NamedTuple):
    rms: float
    rms_first: float
    rms_second: float
    mean_first: float
    mean_second: float

class FitOutcome(NamedTuple):
    trouble: FitTrouble
    converged: bool
    singular_systems: int
    @property
    def succeeded(self) -> bool: ...

@dataclass(frozen=True, eq=False, repr=False)
class FitResult:
    type: Type
    ids: Sequence[Hashable]
    source: _Doubles
    target: _Doubles
    used: NDArray[np.bool_]
    residuals: _Doubles
    statistics: Statistics
    outcome: FitOutcome
    check: TruthCheck
    solution: _Solution
    sigma: _Doubles | None
    sigma0: float | None
    alpha: float
    _transformation: Transformation | None
    _points: Any
    @property
    def adjustment(self) -> Adjustment: ...
    @property
    def warnings(self) -> tuple[Finding, ...]: ...
    def advice(self) -> TypeAdvice: ...
    @property
    def transformation(self) -> Transformation: ...
    @property
    def complaint(self) -> str: ...
    def raise_for_trouble(self) -> FitResult: ...
    def exclude(self, *ids: Hashable) -> FitResult: ...
    def include(self, *ids: Hashable) -> FitResult: ...
    def summary(self) -> str: ...
    def report(
        self,
        path: _Path,
        *,
        date: datetime.date | str | None = None,
        limit: float | None = None,
        files: Iterable[_Path] = (),
    ) -> None: ...

@overload
def fit(
    source: ArrayLike,
    target: ArrayLike,
    type: _TypeLike,
    *,
    ids: Iterable[Hashable] | None = None,
    used: ArrayLike | None = None,
    solution: _Solution = "documented",
    sigma: ArrayLike | None = None,
    sigma0: float | None = None,
    alpha: float = 0.05,
) -> FitResult: ...
@overload
def fit(
    source: ControlPoints,
    target: _TypeLike,
    type: None = None,
    *,
    used: ArrayLike | None = None,
    solution: _Solution = "documented",
    sigma: ArrayLike | None = None,
    sigma0: float | None = None,
    alpha: float = 0.05,
) -> FitResult: ...
@overload
def fit(
    source: ControlPoints,
    target: None = None,
    *,
    type: _TypeLike,
    used: ArrayLike | None = None,
    solution: _Solution = "documented",
    sigma: ArrayLike | None = None,
    sigma0: float | None = None,
    alpha: float = 0.05,
) -> FitResult: ...

# The published classes.

class RuntimeError(builtins.RuntimeError):
    number: int

class TR_PRM:
    eType: enuTR_TYPE
    dA0: float
    dA1: float
    dA2: float
    dA3: float
    dA4: float
    dA5: float
    dA6: float
    dA7: float
    dA8: float
    dA9: float
    dA10: float
    dA11: float
    dA12: float
    dA13: float
    dA14: float
    dA15: float
    dA16: float
    dA17: float
    dA18: float
    dA19: float
    dA20: float
    dA21: float
    dB0: float
    dB1: float
    dB2: float
    dB3: float
    dB4: float
    dB5: float
    dB6: float
    dB7: float
    dB8: float
    dB9: float
    dB10: float
    dB11: float
    dB12: float
    dB13: float
    dB14: float
    dB15: float
    dB16: float
    dB17: float
    dB18: float
    dB19: float
    dB20: float
    dB21: float
    def __init__(self, eType: enuTR_TYPE = ..., /, *values: float, **fields: Any) -> None: ...
    def __eq__(self, other: object) -> bool: ...

class AFFIN_PRM:
    eType: enuTR_TYPE
    dA0: float
    dA1: float
    dA2: float
    dB1: float
    dB0: float
    dB2: float
    def __init__(self, eType: enuTR_TYPE = ..., /, *values: float, **fields: Any) -> None: ...
    def __eq__(self, other: object) -> bool: ...

class typeXYs4Tr:
    sId: str
    dXsour: float
    dYsour: float
    dXdest: float
    dYdest: float
    dXerr: float
    dYerr: float
    bNotUsed: bool
    def __init__(
        self,
        sId: str = ...,
        dXsour: float = ...,
        dYsour: float = ...,
        dXdest: float = ...,
        dYdest: float = ...,
        dXerr: float = ...,
        dYerr: float = ...,
        bNotUsed: bool = ...,
    ) -> None: ...
    def __eq__(self, other: object) -> bool: ...

class Connection:
    def Disconnect(self) -> None: ...

class TypeEvent:
    def Subscribe(self, handler: Callable[[enuTR_TYPE], object]) -> Connection: ...

class clsTrCalc:
    def __init__(self) -> None: ...
    eTrType: enuTR_TYPE
    udtTrPrm: TR_PRM
    gdErrLimit: float
    Solution: _Solution
    @property
    def Truth(self) -> TruthCheck: ...
    @property
    def Outcome(self) -> FitOutcome: ...
    @property
    def lFullCnt(self) -> int: ...
    @property
    def lNotUsedCnt(self) -> int: ...
    @property
    def dRmsErr(self) -> float: ...
    @property
    def dRmsErrX(self) -> float: ...
    @property
    def dRmsErrY(self) -> float: ...
    @property
    def dMiddleErrX(self) -> float: ...
    @property
    def dMiddleErrY(self) -> float: ...
    @property
    def TypeChanched(self) -> TypeEvent: ...
    @property
    def lDebugId(self) -> int: ...
    sInitDir: _WriteOnly[_Path]
    def AddXY4Tr(self, tXY4Tr: Iterable[_Pair], bAppend: bool) -> None: ...
    def GetAllXYs(self) -> list[typeXYs4Tr]: ...
    def GetXYs(self, bUsed: bool) -> list[typeXYs4Tr]: ...
    def GetRect4Dest(self) -> tuple[float, float, float, float]: ...
    def SwapSourDest(self) -> None: ...
    def ResetAllNotUsed(self) -> None: ...
    def ExcludeByIx(self, lIx: int, bRecalc: bool) -> None: ...
    def TearDown(self) -> None: ...
    def bTypeIsPolinom(self) -> bool: ...
    def bXYCntIsValid4TrType(self, eTrType4Check: enuTR_TYPE) -> bool: ...
    def DoCalcTr(self) -> None: ...
    def DoCalc_Helmert3(self, iterCntMax: int = 20) -> None: ...
    def DoCalc_Affin5(self, iterCntMax: int = 50) -> None: ...
    def TrXY(self, dXsour: float, dYsour: float) -> tuple[float, float]: ...
    def bTrXYArr(
        self, dX: ArrayLike, dY: ArrayLike, out: tuple[_Doubles, _Doubles] | None = None
    ) -> tuple[bool, _Doubles, _Doubles]: ...
    def sListXYs(self) -> str: ...
    def bSaveXYs4Tr(self, sFileName: _Path) -> bool: ...
    def bLoadXYsFromFile(self, sFileXYs: _Path, bAppend: bool) -> bool: ...
    def bChooseFile4LoadXYs4Tr(
        self, sFileName: str = "", sInitDir: str = "", Owner: int = -1
    ) -> tuple[bool, str, str]: ...
    def bChooseFile4SaveXYs4Tr(
        self, sFileName: str = "", sInitDir: str = "", Owner: int = -1
    ) -> tuple[bool, str, str]: ...
    def SaveLog(self, sLogFileName: _Path, LanguageID: int = 0) -> None: ...
    def bDoModal(self, bShowApplyButton: bool) -> bool: ...
    def setLanguageID(self, LanguageID: int) -> None: ...

class clsTr:
    def __init__(self) -> None: ...
    def __enter__(self) -> clsTr: ...
    def __exit__(self, *exception: object) -> None: ...
    gName: str
    gId: int
    PI: float
    RAD_90: float
    RAD_180: float
    RAD_270: float
    RAD_360: float
    udtTrPrm: TR_PRM
    udtTrAffinPrm: _WriteOnly[AFFIN_PRM]
    udtTrPrmByDAT2M1: _WriteOnly[enuTR_TYPE]
    sInitDir: _WriteOnly[_Path]
    @property
    def lDebugId(self) -> int: ...
    @property
    def lNumberOfParameters(self) -> int: ...
    @property
    def sTrTypeName(self) -> str: ...
    @property
    def oCalcTr(self) -> clsTrCalc: ...
    def TearDown(self) -> None: ...
    def bLoadByDAT2M1(self) -> bool: ...
    def bGetAffinPrm(self) -> _SixParameters: ...
    def bGetHelmertPrm(self) -> _SixParameters: ...
    def bGetInversePrm(self) -> tuple[bool, AFFIN_PRM]: ...
    def TrXY(self, dX: float, dY: float) -> tuple[float, float]: ...
    def TrAngle(self, dAngle: float, dX: float, dY: float, dLength: float = 100.0) -> float: ...
    def bTypeIsPolinom(self) -> bool: ...
    def bChooseFile4LoadAffinTrPrm(
        self, sFileName: str = "", sInitDir: str = "", Owner: int = -1
    ) -> tuple[bool, str, str]: ...
    def bChooseFile4SaveAffinTrPrm(
        self, sFileName: str = "", sInitDir: str = "", Owner: int = -1
    ) -> tuple[bool, str, str]: ...
    def bChooseFile4LoadPoliTrPrm(
        self, sFileName: str = "", sInitDir: str = "", Owner: int = -1
    ) -> tuple[bool, str, str]: ...
    def bChooseFile4SavePoliTrPrm(
        self, sFileName: str = "", sInitDir: str = "", Owner: int = -1
    ) -> tuple[bool, str, str]: ...
    def bChooseFileAndSaveTrPrm(
        self, sFileName: str = "", sInitDir: str = "", Owner: int = -1
    ) -> tuple[str, str]: ...
    def bSaveAffinTrPrm(self, sFileTrPrm: _Path, bItr25Format: bool = False) -> bool: ...
    def bLoadAffinTrPrmFromFile(self, sFileTrPrm: _Path, bItr25Format: bool = False) -> bool: ...
    def bLoadPoliTrPrmFromFile(self, sFileTrPrm: _Path) -> bool: ...
    def bSavePoliTrPrm(self, sFileTrPrm: _Path, vTitle: str | None = None) -> bool: ...
    def sListHelmertTrPrm(self, vTitle: str | None = None) -> str: ...
    def sListPoliTrPrm(self, vTitle: str | None = None) -> str: ...
    def bChooseTrPrm(self) -> bool: ...
    def bShowAffinTrPrm(self) -> bool: ...
    def bShowPoliTrPrm(self) -> bool: ...
    def bShowXYs4Tr(self, sTitle: str = "") -> bool: ...

@overload
def EvalTrPrm(  # type: ignore[misc]  # a number is an ArrayLike too
    record: TR_PRM, first: float, second: float
) -> tuple[float, float]: ...
@overload
def EvalTrPrm(
    record: TR_PRM,
    first: ArrayLike,
    second: ArrayLike,
    out: tuple[_Doubles, _Doubles] | None = None,
) -> tuple[_Doubles, _Doubles]: ...
def PolyFormulaText(eType: enuTR_TYPE) -> str: ...
def MatrixTimesTranspose(design: ArrayLike) -> _Doubles: ...
def MatrixInverse(matrix: ArrayLike) -> tuple[bool, _Doubles]: ...
def fMAtrix_Mul_Vector(matrix: ArrayLike, vector: ArrayLike) -> _Doubles: ...
def FormatFixed(dValue: float, nDecimals: int, nWidth: int) -> str: ...
def FormatSci(dValue: float) -> str: ...
def PadLeft(sText: str, nWidth: int) -> str: ...
def CleanNumberLine(sLine: str, bCommaIsDecimal: bool) -> str: ...
def GetFileExt(sPath: str) -> str: ...
def StripFileExt(sName: str) -> str: ...
def GetFolderPart(sPath: str) -> str: ...
def GetFileTitle(sPath: str, bWithExt: bool) -> str: ...
def GetMlString(id: int, sDefault: str = "") -> str: ...

# The loaders of control points and of six parameters take commas as separators, 1,304 as two
# numbers, that of polynomials reads 1304, and none says so: these two tell beforehand.
def ParametersHaveDecimalCommas(fileName: _Path) -> bool: ...
def PointsMayHaveDecimalCommas(fileName: _Path) -> bool: ...
def NationalInfos() -> list[NationalInfo]: ...
@overload
def DecimalSeparator() -> str: ...
@overload
def DecimalSeparator(separator: str) -> None: ...

class NationalInfo:
    @property
    def type(self) -> enuTR_TYPE: ...
    @property
    def name(self) -> str: ...
    @property
    def source(self) -> str: ...
    @property
    def destination(self) -> str: ...
    @property
    def accuracy(self) -> float: ...
    @property
    def area(self) -> Literal["Hungary", "Budapest"]: ...

class Message:
    @property
    def text(self) -> str: ...
    @property
    def title(self) -> str: ...
    @property
    def icon(self) -> Literal["none", "information", "exclamation"]: ...
    @property
    def buttons(self) -> tuple[str, ...]: ...
    @property
    def default_answer(self) -> Literal["ok", "yes", "no", "cancel"]: ...

class FileRequest:
    @property
    def file_name(self) -> str: ...
    @property
    def title(self) -> str: ...
    @property
    def initial_folder(self) -> str: ...
    @property
    def default_extension(self) -> str: ...
    @property
    def filters(self) -> list[tuple[str, str]]: ...
    @property
    def filter_index(self) -> int: ...
    @property
    def owner(self) -> int: ...

def install_platform(
    *,
    messages: Callable[[Message], str | None] | None = None,
    choose_to_open: Callable[[FileRequest], _Path | None] | None = None,
    choose_to_save: Callable[[FileRequest], _Path | None] | None = None,
    settings: MutableMapping[str, str] | None = None,
    dialogs: dict[str, Callable[..., Any]] | None = None,
    texts: Callable[[int, int], str | None] | None = None,
    language: int = 1038,
) -> None: ...
