; What the installer says, in the languages of the program: a name, then English, Hungarian, Romanian, Serbian and
; Vietnamese.

!macro Say name english hungarian romanian serbian vietnamese
    LangString ${name} ${LANG_ENGLISH} "${english}"
    LangString ${name} ${LANG_HUNGARIAN} "${hungarian}"
    LangString ${name} ${LANG_ROMANIAN} "${romanian}"
    LangString ${name} ${LANG_SERBIANLATIN} "${serbian}"
    LangString ${name} ${LANG_VIETNAMESE} "${vietnamese}"
!macroend

!insertmacro Say ProgramWords \
    "The program with its windows, the command line, examples and documentation." \
    "A program az ablakaival, a parancssor, példák és a dokumentáció." \
    "Programul cu ferestrele sale, linia de comandă, exemple și documentația." \
    "Program sa prozorima, komandna linija, primeri i dokumentacija." \
    "Chương trình với các cửa sổ, dòng lệnh, ví dụ và tài liệu."
!insertmacro Say MenuSection \
    "Start menu" \
    "Start menü" \
    "Meniul Start" \
    "Start meni" \
    "Menu Start"
!insertmacro Say MenuWords \
    "Entries in the Start menu for the program and its documentation." \
    "A program és a dokumentáció a Start menüben." \
    "Programul și documentația în meniul Start." \
    "Program i dokumentacija u Start meniju." \
    "Chương trình và tài liệu trong menu Start."
!insertmacro Say Documentation \
    "KV_Tr documentation" \
    "KV_Tr dokumentáció" \
    "Documentația KV_Tr" \
    "Dokumentacija za KV_Tr" \
    "Tài liệu KV_Tr"
!insertmacro Say PathSection \
    "Command line (PATH)" \
    "Parancssor (PATH)" \
    "Linia de comandă (PATH)" \
    "Komandna linija (PATH)" \
    "Dòng lệnh (PATH)"
!insertmacro Say PathWords \
    "Adds the folder of kv_tr to your PATH, so that the command works in every folder." \
    "A kv_tr mappája bekerül az Ön PATH változójába, így a parancs minden mappában működik." \
    "Adaugă dosarul lui kv_tr în variabila PATH, astfel încât comanda să funcționeze în orice dosar." \
    "Dodaje fasciklu programa kv_tr u vašu promenljivu PATH, pa komanda radi u svakoj fascikli." \
    "Thêm thư mục của kv_tr vào biến PATH của bạn để lệnh chạy được trong mọi thư mục."
!insertmacro Say TypesSection \
    "Open files with KV_Tr" \
    "Fájlok megnyitása a KV_Tr-rel" \
    "Deschide fișiere cu KV_Tr" \
    "Otvaranje datoteka programom KV_Tr" \
    "Mở tệp bằng KV_Tr"
!insertmacro Say TypesWords \
    "Offers KV_Tr for these files. Another program that opens them already goes on doing so." \
    "A KV_Tr megjelenik az ilyen fájlok megnyitásához. Ha már más program nyitja meg őket, az így is marad." \
    "Oferă KV_Tr pentru aceste fișiere. Dacă un alt program le deschide deja, rămâne așa." \
    "Nudi KV_Tr za ove datoteke. Ako ih već otvara drugi program, tako i ostaje." \
    "Đề xuất KV_Tr cho các tệp này. Nếu một chương trình khác đã mở chúng thì vẫn giữ nguyên."
!insertmacro Say ProjectType \
    "KV_Tr project" \
    "KV_Tr-projekt" \
    "Proiect KV_Tr" \
    "KV_Tr projekat" \
    "Dự án KV_Tr"
!insertmacro Say ParametersType \
    "Transformation parameters" \
    "Transzformációs paraméterek" \
    "Parametri de transformare" \
    "Parametri transformacije" \
    "Tham số biến đổi"
!insertmacro Say PointsType \
    "Control points" \
    "Közös pontok" \
    "Puncte comune" \
    "Zajedničke tačke" \
    "Điểm khống chế"
!insertmacro Say ComponentSection \
    "Component for other programs (COM)" \
    "Komponens más programokhoz (COM)" \
    "Componentă pentru alte programe (COM)" \
    "Komponenta za druge programe (COM)" \
    "Thành phần cho các chương trình khác (COM)"
!insertmacro Say ComponentWords \
    "Registers the component, so that spreadsheets, scripts and other programs can use it." \
    "Regisztrálja a komponenst, hogy táblázatkezelők, szkriptek és más programok használhassák." \
    "Înregistrează componenta, astfel încât foi de calcul, scripturi și alte programe să o poată folosi." \
    "Registruje komponentu da bi je mogle koristiti tabele, skripte i drugi programi." \
    "Đăng ký thành phần để bảng tính, tập lệnh và các chương trình khác có thể dùng."
!insertmacro Say SettingsSection \
    "Settings and recovered projects" \
    "Beállítások és helyreállított projektek" \
    "Setări și proiecte recuperate" \
    "Podešavanja i spaseni projekti" \
    "Thiết lập và các dự án khôi phục"
!insertmacro Say SettingsWords \
    "Removes your settings, the list of recent files and copies of projects that were not saved." \
    "Törli a beállításait, a legutóbbi fájlok listáját és a mentetlen projektek másolatait." \
    "Șterge setările, lista fișierelor recente și copiile proiectelor nesalvate." \
    "Uklanja vaša podešavanja, spisak nedavnih datoteka i kopije nesačuvanih projekata." \
    "Xóa các thiết lập của bạn, danh sách tệp gần đây và bản sao của các dự án chưa lưu."
!insertmacro Say Running \
    "KV_Tr is running: $1 is in use. Please close the program, then try again." \
    "A KV_Tr éppen fut: a(z) $1 használatban van. Kérjük, zárja be a programot, majd próbálja újra." \
    "KV_Tr rulează: $1 este în uz. Închideți programul, apoi încercați din nou." \
    "KV_Tr je pokrenut: $1 je u upotrebi. Zatvorite program, pa pokušajte ponovo." \
    "KV_Tr đang chạy: $1 đang được sử dụng. Hãy đóng chương trình rồi thử lại."
!insertmacro Say TooOld \
    "KV_Tr needs Windows 10 or newer." \
    "A KV_Tr futásához Windows 10 vagy újabb szükséges." \
    "KV_Tr necesită Windows 10 sau mai nou." \
    "Za KV_Tr je potreban Windows 10 ili noviji." \
    "KV_Tr cần Windows 10 trở lên."
