// What manual pages and examples say, in the languages of the component.
#pragma once

#include <string>

#include "kv_tr/published/ml_strings.h"

namespace kv_tr::cli {

/// A text in all languages.
struct Words {
    const char* english;
    const char* hungarian;
    const char* romanian;
    const char* serbian;
    const char* vietnamese;
};

/// The text in the component's language.
inline std::string Said(const Words& words) {
    switch (CurrentMlLanguage()) {
        case kHungarian: return words.hungarian;
        case kRomanian: return words.romanian;
        case kSerbian: return words.serbian;
        case kVietnamese: return words.vietnamese;
        default: return words.english;
    }
}

// clang-format off
inline constexpr Words kHelpSummary = {
    "Show the help of the program or of a command",
    "Megmutatja a program vagy egy parancs súgóját",
    "Arată ajutorul programului sau al unei comenzi",
    "Prikazuje pomoć programa ili jedne komande",
    "Hiển thị trợ giúp của chương trình hoặc của một lệnh"};
inline constexpr Words kHelpArgument = {
    "The command; without one, the help of the program",
    "A parancs; nélküle a program súgója",
    "Comanda; fără ea, ajutorul programului",
    "Komanda; bez nje pomoć programa",
    "Tên lệnh; nếu không có thì là trợ giúp của chương trình"};

// Headings of a manual page.
inline constexpr Words kNameTitle = {"NAME", "NÉV", "NUME", "IME", "TÊN"};
inline constexpr Words kSynopsisTitle = {"SYNOPSIS", "ÁTTEKINTÉS", "REZUMAT", "PREGLED", "TÓM TẮT"};
inline constexpr Words kDescriptionTitle = {"DESCRIPTION", "LEÍRÁS", "DESCRIERE", "OPIS", "MÔ TẢ"};
inline constexpr Words kCommandsTitle = {"COMMANDS", "PARANCSOK", "COMENZI", "KOMANDE", "LỆNH"};
inline constexpr Words kArgumentsTitle = {"ARGUMENTS", "ARGUMENTUMOK", "ARGUMENTE", "ARGUMENTI", "THAM SỐ"};
inline constexpr Words kExitStatusTitle = {"EXIT STATUS", "KILÉPÉSI KÓD", "COD DE IEȘIRE", "IZLAZNI KOD", "MÃ THOÁT"};
inline constexpr Words kEnvironmentTitle = {"ENVIRONMENT", "KÖRNYEZET", "MEDIU", "OKRUŽENJE", "BIẾN MÔI TRƯỜNG"};
inline constexpr Words kFilesTitle = {"FILES", "FÁJLOK", "FIȘIERE", "DATOTEKE", "TỆP"};
inline constexpr Words kExamplesHeading = {"Examples", "Példák", "Exemple", "Primeri", "Ví dụ"};
inline constexpr Words kExamplesTitle = {"EXAMPLES", "PÉLDÁK", "EXEMPLE", "PRIMERI", "VÍ DỤ"};
inline constexpr Words kSeeAlsoTitle = {"SEE ALSO", "LÁSD MÉG", "VEZI ȘI", "VIDI TAKOĐE", "XEM THÊM"};

inline constexpr Words kProgramDetails = {
    "Points that are known in two systems determine a transformation by least squares. The program shows the residual of every point, leaves out those that are named, saves a log, a report and the parameters, and transforms the rest of the coordinates.",
    "A két rendszerben ismert pontokból a program a legkisebb négyzetek módszerével határozza meg a transzformációt. Megmutatja minden pont maradék eltérését, kihagyja a megnevezett pontokat, jegyzőkönyvet, jelentést és paramétereket ment, és átszámítja a többi koordinátát.",
    "Punctele cunoscute în două sisteme determină o transformare prin metoda celor mai mici pătrate. Programul arată eroarea reziduală a fiecărui punct, omite punctele numite, salvează un proces-verbal, un raport și parametrii, și transformă celelalte coordonate.",
    "Tačke poznate u dva sistema određuju transformaciju metodom najmanjih kvadrata. Program prikazuje odstupanje svake tačke, izostavlja navedene tačke, čuva zapisnik, izveštaj i parametre, i transformiše ostale koordinate.",
    "Các điểm đã biết trong hai hệ xác định một phép biến đổi theo phương pháp bình phương nhỏ nhất. Chương trình hiển thị số dư của từng điểm, bỏ các điểm được nêu tên, lưu nhật ký, báo cáo và tham số, rồi tính chuyển các tọa độ còn lại."};

// Exit codes.
inline constexpr Words kExitDone = {
    "Everything was done.",
    "Minden elkészült.",
    "Totul a fost făcut.",
    "Sve je urađeno.",
    "Mọi việc đã xong."};
inline constexpr Words kExitReported = {
    "Something failed, or was reported on the standard error stream.",
    "Valami nem sikerült, vagy üzenet került a szabványos hibakimenetre.",
    "Ceva nu a reușit sau a fost semnalat la ieșirea standard de erori.",
    "Nešto nije uspelo ili je prijavljeno na standardni izlaz za greške.",
    "Có việc không thành hoặc có thông báo ở đầu ra lỗi chuẩn."};
inline constexpr Words kExitWrongUsage = {
    "The command line was not understood.",
    "A parancssor hibás.",
    "Linia de comandă nu a fost înțeleasă.",
    "Komandna linija nije shvaćena.",
    "Không hiểu được dòng lệnh."};

// Variables of the environment.
inline constexpr Words kLocaleVariables = {
    "The language of the texts, unless --language names one: Hungarian, Romanian, Vietnamese, Serbian, else English.",
    "A szövegek nyelve, ha a --language nem ad meg mást: magyar, román, vietnami, szerb, egyébként angol.",
    "Limba textelor, dacă --language nu numește alta: maghiară, română, vietnameză, sârbă, altfel engleză.",
    "Jezik tekstova, ako --language ne navodi drugi: mađarski, rumunski, vijetnamski, srpski, inače engleski.",
    "Ngôn ngữ của văn bản, nếu --language không nêu: tiếng Hungary, Romania, Việt, Serbia, còn lại là tiếng Anh."};
inline constexpr Words kNoColorVariable = {
    "Where it is set, no colours are shown.",
    "Ha be van állítva, nincsenek színek.",
    "Dacă este definită, nu se folosesc culori.",
    "Ako je zadata, nema boja.",
    "Khi được đặt thì không dùng màu."};
inline constexpr Words kEpochVariable = {
    "The time whose day reports bear, in seconds since 1970.",
    "Az az időpont 1970 óta másodpercben, amelynek napját a jelentések viselik.",
    "Momentul a cărui zi apare în rapoarte, în secunde din 1970.",
    "Trenutak čiji dan nose izveštaji, u sekundama od 1970.",
    "Thời điểm lấy ngày cho báo cáo, tính bằng giây từ năm 1970."};

// Kinds of files.
inline constexpr Words kPointFiles = {
    "Control points: lines of an identifier, two coordinates of the source and two of the destination, separated by blanks, tabs, commas or semicolons.",
    "Közös pontok: soronként azonosító, a forrás két és a cél két koordinátája, szóközzel, tabulátorral, vesszővel vagy pontosvesszővel elválasztva.",
    "Puncte comune: linii cu un identificator, două coordonate în sistemul sursă și două în cel destinație, separate prin spații, tabulatoare, virgule sau punct și virgulă.",
    "Zajedničke tačke: redovi sa oznakom, dve koordinate polaznog i dve ciljnog sistema, razdvojene razmacima, tabulatorima, zarezima ili tačkom-zarezom.",
    "Điểm khống chế: mỗi dòng gồm tên điểm, hai tọa độ nguồn và hai tọa độ đích, cách nhau bằng dấu cách, tab, dấu phẩy hoặc dấu chấm phẩy."};
inline constexpr Words kLinearFiles = {
    "Six parameters of a linear transformation; .prm has them in another order.",
    "Egy lineáris transzformáció hat paramétere; a .prm fájlban más a sorrendjük.",
    "Șase parametri ai unei transformări liniare; în .prm au altă ordine.",
    "Šest parametara linearne transformacije; u .prm su drugim redom.",
    "Sáu tham số của phép biến đổi tuyến tính; trong .prm thứ tự khác."};
inline constexpr Words kPolynomialFiles = {
    "Parameters of a polynomial.",
    "Egy polinom paraméterei.",
    "Parametrii unui polinom.",
    "Parametri polinoma.",
    "Tham số của một đa thức."};

// What the examples do.
inline constexpr Words kFitExample = {
    "Fit, leave out a point and save the log",
    "Illesztés egy pont kihagyásával, a jegyzőkönyv mentése",
    "Determinare fără un punct și salvarea procesului-verbal",
    "Određivanje bez jedne tačke i čuvanje zapisnika",
    "Xác định, bỏ một điểm và lưu nhật ký"};
inline constexpr Words kReportExample = {
    "A report to sign, and the parameters for later",
    "Aláírható jelentés, és a paraméterek későbbre",
    "Un raport de semnat și parametrii pentru mai târziu",
    "Izveštaj za potpis i parametri za kasnije",
    "Báo cáo để ký và tham số dùng về sau"};
inline constexpr Words kAdviseExample = {
    "Which type the points warrant",
    "Melyik típust indokolják a pontok",
    "Ce tip justifică punctele",
    "Koji tip tačke opravdavaju",
    "Các điểm cho phép dùng kiểu nào"};
inline constexpr Words kConvertExample = {
    "Convert control points to a table",
    "Közös pontok átalakítása táblázattá",
    "Conversia punctelor comune într-un tabel",
    "Pretvaranje zajedničkih tačaka u tabelu",
    "Chuyển điểm khống chế thành bảng"};
inline constexpr Words kTransformExample = {
    "Transform coordinates by control points",
    "Koordináták átszámítása közös pontok alapján",
    "Transformarea coordonatelor după puncte comune",
    "Transformisanje koordinata prema zajedničkim tačkama",
    "Tính chuyển tọa độ theo điểm khống chế"};
inline constexpr Words kBuiltInExample = {
    "Transform coordinates by a built-in transformation",
    "Koordináták átszámítása beépített transzformációval",
    "Transformarea coordonatelor cu o transformare predefinită",
    "Transformisanje koordinata ugrađenom transformacijom",
    "Tính chuyển tọa độ bằng phép biến đổi có sẵn"};
inline constexpr Words kLayersExample = {
    "Transform all layers of a data set",
    "Egy adatállomány összes rétegének átszámítása",
    "Transformarea tuturor straturilor unui set de date",
    "Transformisanje svih slojeva skupa podataka",
    "Biến đổi mọi lớp của một tập dữ liệu"};
inline constexpr Words kParametersExample = {
    "Show parameters for another program",
    "Paraméterek egy másik programnak",
    "Parametrii pentru alt program",
    "Parametri za drugi program",
    "Hiển thị tham số cho chương trình khác"};
inline constexpr Words kAngleExample = {
    "A direction in gons at a point",
    "Irány gonban egy pontban",
    "O direcție în grade centezimale într-un punct",
    "Pravac u gonima u tački",
    "Một hướng tính bằng gon tại một điểm"};
inline constexpr Words kDistortionExample = {
    "Scales and rotation at the points of a file",
    "Méretarányok és elfordulás a fájl pontjaiban",
    "Scările și rotația în punctele unui fișier",
    "Razmere i rotacija u tačkama datoteke",
    "Tỷ lệ và góc xoay tại các điểm của tệp"};
inline constexpr Words kWarpExample = {
    "Place a scan by control points on its pixels",
    "Szkennelt kép elhelyezése képpontjaira vonatkozó közös pontokkal",
    "Așezarea unei scanări după puncte comune pe pixelii ei",
    "Smeštanje skena prema tačkama na njegovim pikselima",
    "Đặt ảnh quét theo điểm khống chế trên điểm ảnh"};
// clang-format on

}  // namespace kv_tr::cli
