#include "HelpWording.h"
#include <map>

namespace pixelhain {

namespace {

using Part = HelpWording::Part;

std::map<std::string, std::vector<HelpWording>> const wording = {
    { "start",
        {
            { Part::title, "Erste Schritte" },
            { Part::text,
                "**Pixelhain** ist ein schneller Fotobrowser für Ordner auf deinem Mac. Du wählst "
                "einen Ordner, und sofort erscheint eine Galerie mit Vorschaubildern. Es gibt "
                "keine Bibliothek, keinen Import und keine Datenbank: Pixelhain zeigt immer genau "
                "das, was gerade im Ordner liegt." },
            { Part::heading, "Einen Ordner öffnen" },
            { Part::bullet, "Klicke in der Toolbar auf **Ordner öffnen** oder drücke **⌘O**." },
            { Part::bullet,
                "Oder ziehe einen Ordner aus dem Finder ins Fenster oder auf das Pixelhain-Symbol "
                "im Dock." },
            { Part::bullet,
                "Ziehst du ein einzelnes Bild hinein, öffnet Pixelhain dessen Ordner und zeigt das "
                "Bild direkt in der Vollansicht." },
            { Part::bullet,
                "Beim nächsten Start öffnet Pixelhain automatisch den zuletzt angezeigten "
                "Ordner." },
            { Part::heading, "Das Fenster im Überblick" },
            { Part::bullet,
                "**Seitenleiste** (links): der geöffnete Ordner und seine Unterordner als Baum." },
            { Part::bullet, "**Galerie** (Mitte): Vorschaubilder mit Dateiname und Auflösung." },
            { Part::bullet,
                "**Toolbar** (oben): Ordner, Vorschaugröße, Ansicht, Diashow, Papierkorb, "
                "Aktionen, Teilen und Suche." },
            { Part::bullet,
                "**Statusleiste** (unten): Anzahl der Fotos, Anzahl der ausgewählten und Meldungen "
                "zur letzten Aktion." },
            { Part::tip,
                "Ein Klick auf ein Foto öffnet es groß. Zum Auswählen nimmst du den Kreis oben "
                "links am Vorschaubild, ⌘-Klick oder die Taste X." },
        } },
    { "gallery",
        {
            { Part::title, "Galerie & Seitenleiste" },
            { Part::heading, "Ordnerbaum in der Seitenleiste" },
            { Part::text,
                "Ganz oben steht fett der geöffnete Ordner, darunter seine Unterordner. Mit dem "
                "Dreieck klappst du einen Zweig auf oder zu." },
            { Part::bullet,
                "Ein Klick auf einen Ordner zeigt dessen Fotos. Der aktuell gezeigte Ordner hat "
                "ein gefülltes Symbol." },
            { Part::bullet,
                "Die Zahl rechts neben einem Ordner gibt an, wie viele Fotos **direkt** darin "
                "liegen. Fotos in Unterordnern zählen dort nicht mit. Ordner ohne Fotos haben "
                "keine Zahl." },
            { Part::bullet,
                "**Mehrere Ordner auf einmal:** Mit **⌘-Klick** wählst du weitere Ordner dazu, mit "
                "**⇧-Klick** einen ganzen Bereich. Die Galerie zeigt dann die Fotos aller "
                "ausgewählten Ordner zusammen, sortiert wie eingestellt. Rechtsklick bietet "
                "außerdem *Zur Auswahl hinzufügen* und *Aus Auswahl entfernen*." },
            { Part::bullet,
                "Hat die Seitenleiste den Fokus, bewegst du dich mit den Pfeiltasten durch den "
                "Baum." },
            { Part::bullet,
                "Der **↑-Pfeil** oben in der Seitenleiste oder **⌘↑** macht den übergeordneten "
                "Ordner zur obersten Ebene." },
            { Part::bullet,
                "Rechtsklick auf einen Ordner: *Als oberste Ebene festlegen*, *Im Finder zeigen*, "
                "*Ordnerbaum neu laden*." },
            { Part::bullet,
                "Mit **⌃⌘S** oder dem Seitenleisten-Knopf in der Toolbar blendest du die "
                "Seitenleiste ein und aus." },
            { Part::text,
                "Den Schieberegler in der Toolbar oder die Tasten **+** und **−** stellen die "
                "Größe der Vorschaubilder ein." },
            { Part::text,
                "Unter jedem Bild stehen Dateiname und Auflösung in Pixeln. Beides lässt sich im "
                "Menü **Ansicht** abschalten." },
            { Part::text,
                "Animierte Dateien tragen unten rechts ein kleines Etikett, etwa „GIF“." },
            { Part::heading, "Sortieren, filtern, Unterordner" },
            { Part::bullet,
                "Im Menü **Ansicht** (Pfeil-Symbol in der Toolbar) sortierst du nach Name, "
                "Änderungsdatum oder Dateigröße, wahlweise auf- oder absteigend." },
            { Part::bullet,
                "**Unterordner einbeziehen** zeigt die Fotos aller Unterordner zusammen in einer "
                "Galerie." },
            { Part::bullet, "Das Suchfeld rechts oben filtert die Galerie nach dem Dateinamen." },
            { Part::bullet,
                "**⌘R** liest Ordner und Ordnerbaum neu ein, zum Beispiel nachdem du im Finder "
                "Dateien hinzugefügt hast." },
            { Part::heading, "Mit der Tastatur durch die Galerie" },
            { Part::keys, "← → ↑ ↓" },
            { Part::action, "Rahmen zum nächsten Foto bewegen" },
            { Part::keys, "Leertaste / Return" },
            { Part::action, "Umrandetes Foto groß anzeigen" },
            { Part::keys, "Pos1 / Ende" },
            { Part::action, "Zum ersten bzw. letzten Foto" },
            { Part::keys, "+ / −" },
            { Part::action, "Vorschaubilder größer / kleiner" },
        } },
    { "viewer",
        {
            { Part::title, "Vollansicht & Zoom" },
            { Part::text,
                "Ein **Klick** auf ein Vorschaubild öffnet die Vollansicht. Die nächsten Bilder "
                "lädt Pixelhain schon im Hintergrund, deshalb geht das Blättern ohne Wartezeit." },
            { Part::keys, "← →  (oder ↑ ↓)" },
            { Part::action, "Vorheriges / nächstes Foto" },
            { Part::keys, "Esc, Leertaste, Return" },
            { Part::action, "Zurück zur Galerie" },
            { Part::keys, "Pos1 / Ende" },
            { Part::action, "Erstes / letztes Foto" },
            { Part::keys, "X" },
            { Part::action, "Auswählen und weiter zum nächsten Foto" },
            { Part::keys, "I" },
            { Part::action, "Infos ein- / ausblenden (Auflösung, Kamera, Objektiv, Belichtung)" },
            { Part::keys, "F" },
            { Part::action, "Vollbild ein / aus" },
            { Part::keys, "D" },
            { Part::action, "Diashow ab diesem Foto" },
            { Part::keys, "⌘⌫" },
            { Part::action, "Foto in den Papierkorb" },
            { Part::text,
                "**Doppelklick** zoomt auf 250 %, ein weiterer Doppelklick zeigt wieder das ganze "
                "Bild." },
            { Part::text,
                "Auf dem Trackpad zoomst du stufenlos mit **zwei Fingern auseinanderziehen**." },
            { Part::text, "Bei vergrößertem Bild **ziehst** du den Ausschnitt mit der Maus." },
            { Part::text, "Beim Zoomen lädt Pixelhain das Bild in voller Auflösung nach." },
            { Part::text,
                "In der oberen Leiste findest du Schließen, Position und Dateiname sowie Knöpfe "
                "für Auswählen, Infos, Diashow, Papierkorb, Teilen und Vollbild. Die Pfeile am "
                "linken und rechten Rand blättern." },
            { Part::tip,
                "Animierte GIFs (und animierte PNG/WebP) laufen in der Vollansicht als Animation "
                "ab." },
        } },
    { "select",
        {
            { Part::title, "Auswählen & Aussortieren" },
            { Part::heading, "Fotos auswählen" },
            { Part::keys, "Kreis oben links" },
            { Part::action, "Foto aus- oder abwählen" },
            { Part::keys, "⌘-Klick" },
            { Part::action, "Einzelnes Foto aus- oder abwählen" },
            { Part::keys, "⇧-Klick" },
            { Part::action, "Alle Fotos bis zu diesem auswählen" },
            { Part::keys, "X" },
            { Part::action, "Umrandetes Foto aus- oder abwählen" },
            { Part::keys, "⇧ + Pfeiltasten" },
            { Part::action, "Auswahl erweitern" },
            { Part::keys, "⌘A" },
            { Part::action, "Alle auswählen" },
            { Part::keys, "⇧⌘A  oder  Esc" },
            { Part::action, "Auswahl aufheben" },
            { Part::text,
                "Im Menü **Fotos** kannst du die Auswahl außerdem umkehren. Ausgewählte Fotos "
                "haben einen farbigen Rahmen und ein Häkchen. Die Statusleiste zeigt, wie viele es "
                "sind." },
            { Part::heading, "Worauf wirken Aktionen?" },
            { Part::bullet, "In der **Vollansicht**: auf das gerade angezeigte Foto." },
            { Part::bullet,
                "In der **Galerie**: auf alle ausgewählten Fotos. Ist nichts ausgewählt, auf das "
                "umrandete Foto." },
            { Part::heading, "Schnell aussortieren" },
            { Part::step, "Klicke auf das erste Foto der Serie." },
            { Part::step,
                "Bei jedem Foto, das weg soll, drückst du **X** oder klickst auf **Auswählen**. "
                "Pixelhain markiert es und springt zum nächsten." },
            { Part::step, "Fotos, die bleiben sollen, überspringst du mit **→**." },
            { Part::step, "Am Ende drückst du **Esc**, um zur Galerie zurückzukehren." },
            { Part::step,
                "Mit dem **Papierkorb**-Knopf oder **⌘⌫** löschst du alle markierten Fotos auf "
                "einmal." },
            { Part::tip,
                "Hast du dich vertan? Ein zweites X auf einem markierten Foto hebt die Markierung "
                "auf, und Pixelhain bleibt dabei auf dem Foto stehen." },
        } },
    { "slideshos",
        {
            { Part::title, "Diashow" },
            { Part::text,
                "Starte die Diashow mit dem **Diashow**-Knopf in der Toolbar, mit **⇧⌘D** oder in "
                "der Galerie mit **D**." },
            { Part::bullet,
                "Sind **mehrere Fotos ausgewählt**, zeigt die Diashow nur diese. Sonst zeigt sie "
                "alle Fotos des Ordners." },
            { Part::bullet, "Sie beginnt beim umrandeten bzw. gerade angezeigten Foto." },
            { Part::bullet,
                "Die Diashow läuft im Vollbild mit weicher Überblendung, und der Mauszeiger wird "
                "ausgeblendet." },
            { Part::heading, "Manuell blättern" },
            { Part::keys, "← →" },
            { Part::action, "Blättern" },
            { Part::keys, "Leertaste" },
            { Part::action, "Pause / Weiter" },
            { Part::keys, "Esc" },
            { Part::action, "Beenden" },
            { Part::text,
                "Im Menü **Fotos** stellst du das **Intervall** (2 bis 20 Sekunden) ein und "
                "schaltest die **zufällige Reihenfolge** ein oder aus." },
        } },
    { "files",
        {
            { Part::title, "Löschen, Verschieben, Kopieren" },
            { Part::heading, "In den Papierkorb legen" },
            { Part::text,
                "Den **Papierkorb**-Knopf findest du in der Toolbar und in der Vollansicht. "
                "Löschen geht außerdem über das Kontextmenü oder **⌘⌫**." },
            { Part::text,
                "Die Fotos landen im Papierkorb des Finders. Gelöscht werden sie dabei nicht." },
            { Part::text,
                "**⌘Z** holt die zuletzt in den Papierkorb gelegten Fotos zurück an ihren Platz." },
            { Part::heading, "Verschieben und Kopieren" },
            { Part::text,
                "**Verschieben nach …** (⇧⌘M) und **Kopieren nach …** (⇧⌘K) findest du im Menü "
                "**Aktionen** oder **Fotos**." },
            { Part::text,
                "Im Dialog kannst du auch einen neuen Ordner anlegen. Pixelhain merkt sich das "
                "zuletzt gewählte Ziel." },
            { Part::text,
                "Gibt es im Ziel schon eine Datei mit demselben Namen, hängt Pixelhain eine Nummer "
                "an, etwa „IMG_0001 2.jpg“. Überschrieben wird nichts." },
            { Part::heading, "Weitere Aktionen" },
            { Part::keys, "⇧⌘R" },
            { Part::action, "Im Finder zeigen" },
            { Part::keys, "⌘↓" },
            { Part::action, "Mit der Standard-App öffnen (z. B. Vorschau)" },
            { Part::keys, "⌘C" },
            { Part::action,
                "In die Zwischenablage kopieren, um es in Mail, Pages oder den Finder "
                "einzusetzen" },
        } },
    { "contactsheet",
        {
            { Part::title, "Kontaktabzug" },
            { Part::text,
                "Ein Kontaktabzug ist ein PDF mit vielen kleinen Bildern auf jeder Seite, gut zum "
                "Ausdrucken, Archivieren oder Verschicken." },
            { Part::step,
                "Wähle die gewünschten Fotos aus. Wählst du keine oder nur ein Foto, kommen alle "
                "Fotos des Ordners in den Kontaktabzug." },
            { Part::step, "Drücke **⌘P** oder wähle **Aktionen → Kontaktabzug (PDF) …**." },
            { Part::step,
                "Lege Titel, Spaltenzahl (2–10), Papierformat (A4, A3, US Letter), Hoch- oder "
                "Querformat und die Anzeige der Dateinamen fest." },
            { Part::step, "Klicke auf **Erstellen …** und wähle einen Speicherort." },
            { Part::text,
                "Jede Seite trägt oben Titel, Anzahl der Fotos, Datum und Seitenzahl. Das fertige "
                "PDF öffnet sich automatisch, zum Beispiel in Vorschau." },
            { Part::tip,
                "Fünf bis sechs Spalten auf A4 sind ein guter Kompromiss aus Übersicht und "
                "Bildgröße." },
        } },
    { "share",
        {
            { Part::title, "Teilen" },
            { Part::text,
                "Mit dem **Teilen**-Knopf (Quadrat mit Pfeil) schickst du Fotos über die Dienste "
                "von macOS weiter: AirDrop, Mail, Nachrichten, Notizen, Fotos und weitere." },
            { Part::bullet,
                "In der **Galerie** teilst du die Auswahl, ohne Auswahl das umrandete Foto." },
            { Part::bullet, "In der **Vollansicht** teilst du das angezeigte Foto." },
            { Part::bullet, "Auch das Kontextmenü eines Vorschaubilds bietet **Teilen …** an." },
        } },
    { "shortcuts",
        {
            { Part::title, "Alle Tastenkürzel" },
            { Part::heading, "Allgemein" },
            { Part::keys, "⌘O" },
            { Part::action, "Ordner öffnen" },
            { Part::keys, "⌘R" },
            { Part::action, "Neu laden" },
            { Part::keys, "⌘↑" },
            { Part::action, "Übergeordneter Ordner im Baum" },
            { Part::keys, "⌃⌘S" },
            { Part::action, "Seitenleiste ein / aus" },
            { Part::keys, "⌘-Klick / ⇧-Klick" },
            { Part::action, "Mehrere Ordner in der Seitenleiste auswählen" },
            { Part::keys, "⌥⌘R" },
            { Part::action, "Ordnerliste aktualisieren" },
            { Part::keys, "⌘?" },
            { Part::action, "Diese Hilfe" },
            { Part::heading, "Galerie" },
            { Part::keys, "← → ↑ ↓" },
            { Part::action, "Rahmen bewegen" },
            { Part::keys, "Leertaste / Return" },
            { Part::action, "Foto groß anzeigen" },
            { Part::keys, "Pos1 / Ende" },
            { Part::action, "Erstes / letztes Foto" },
            { Part::keys, "+ / −" },
            { Part::action, "Vorschaugröße" },
            { Part::keys, "D" },
            { Part::action, "Diashow" },
            { Part::heading, "Vollansicht" },
            { Part::keys, "← →" },
            { Part::action, "Blättern" },
            { Part::keys, "Esc / Leertaste" },
            { Part::action, "Zurück zur Galerie" },
            { Part::keys, "X" },
            { Part::action, "Auswählen und weiter" },
            { Part::keys, "I" },
            { Part::action, "Infos" },
            { Part::keys, "F" },
            { Part::action, "Vollbild" },
            { Part::keys, "D" },
            { Part::action, "Diashow starten / beenden" },
            { Part::heading, "Auswahl" },
            { Part::keys, "X" },
            { Part::action, "Aus- / abwählen" },
            { Part::keys, "⌘-Klick / ⇧-Klick" },
            { Part::action, "Einzeln / Bereich" },
            { Part::keys, "⇧ + Pfeiltasten" },
            { Part::action, "Auswahl erweitern" },
            { Part::keys, "⌘A" },
            { Part::action, "Alle auswählen" },
            { Part::keys, "⇧⌘A / Esc" },
            { Part::action, "Auswahl aufheben" },
            { Part::heading, "Dateien" },
            { Part::keys, "⌘⌫" },
            { Part::action, "In den Papierkorb" },
            { Part::keys, "⌘Z" },
            { Part::action, "Papierkorb rückgängig" },
            { Part::keys, "⇧⌘M" },
            { Part::action, "Verschieben nach …" },
            { Part::keys, "⇧⌘K" },
            { Part::action, "Kopieren nach …" },
            { Part::keys, "⌘P" },
            { Part::action, "Kontaktabzug (PDF)" },
            { Part::keys, "⇧⌘R" },
            { Part::action, "Im Finder zeigen" },
            { Part::keys, "⌘↓" },
            { Part::action, "Mit Standard-App öffnen" },
            { Part::heading, "Diashow" },
            { Part::keys, "⇧⌘D" },
            { Part::action, "Diashow starten / beenden" },
            { Part::keys, "Leertaste" },
            { Part::action, "Pause / Weiter" },
            { Part::keys, "← →" },
            { Part::action, "Blättern" },
            { Part::keys, "Esc" },
            { Part::action, "Beenden" },
        } },
    { "faq",
        {
            { Part::title, "Fragen & Tipps" },
            { Part::heading, "Warum gibt es keine Datenbank?" },
            { Part::text,
                "Pixelhain liest die Fotos direkt aus dem Ordner. Vorschaubilder werden beim "
                "Anzeigen erzeugt und liegen nur im Arbeitsspeicher. Viele Kameras betten fertige "
                "Vorschaubilder in ihre Dateien ein, die Pixelhain bevorzugt nutzt. Deshalb geht "
                "es auch ohne Datenbank schnell, und auf deiner Festplatte entstehen weder "
                "Cache-Dateien noch Bibliotheken." },
            { Part::heading, "Welche Formate werden unterstützt?" },
            { Part::text,
                "Alle Bildformate, die macOS selbst lesen kann: JPEG, HEIC/HEIF, PNG, TIFF, GIF, "
                "WebP, BMP und die RAW-Formate gängiger Kameras (z. B. CR2, CR3, NEF, ARW, DNG, "
                "RAF, ORF, RW2)." },
            { Part::heading, "macOS fragt nach einer Berechtigung" },
            { Part::text,
                "Beim ersten Zugriff auf Schreibtisch, Dokumente, Downloads, iCloud Drive oder "
                "externe Laufwerke fragt macOS einmal nach. Erlaubst du den Zugriff, kann "
                "Pixelhain die Fotos dort anzeigen. Nachträglich änderst du das unter "
                "**Systemeinstellungen → Datenschutz & Sicherheit → Dateien und Ordner**." },
            { Part::heading, "Was speichert Pixelhain?" },
            { Part::text,
                "Nur Einstellungen: den zuletzt geöffneten Ordner, Sortierung, Vorschaugröße, "
                "Diashow-Intervall und Ähnliches. Sie liegen in den normalen macOS-Einstellungen "
                "der App. Fotos und Ordner verändert Pixelhain ausschließlich, wenn du löschst, "
                "verschiebst oder kopierst." },
            { Part::heading, "Ein Ordner mit sehr vielen Fotos ist langsam" },
            { Part::bullet, "Kleinere Vorschaubilder (Taste −) laden schneller." },
            { Part::bullet, "**Unterordner einbeziehen** abschalten, wenn du es nicht brauchst." },
            { Part::bullet,
                "Dateien in iCloud Drive, die nur in der Cloud liegen, lädt macOS beim ersten "
                "Anzeigen herunter. Das kann dauern." },
            { Part::heading, "Neue Dateien erscheinen nicht" },
            { Part::text,
                "Pixelhain überwacht den Ordner nicht ständig. Drücke **⌘R**, um Ordner und "
                "Ordnerbaum neu einzulesen." },
        } },
};

} // namespace

std::vector<HelpWording> wordingOf(std::string const& topic)
{
    return wording.at(topic);
}

} // namespace pixelhain
