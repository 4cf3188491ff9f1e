#include "app/HelpContent.h"

namespace pixelhain {

HelpTopic shortcutsTopic()
{
    return { "shortcuts", "Alle Tastenkürzel", "keyboard",
        {
            HelpHeading { "Allgemein" },
            HelpKeys { {
                { "⌘O", "Ordner öffnen" },
                { "⌘R", "Neu laden" },
                { "⌘↑", "Übergeordneter Ordner im Baum" },
                { "⌃⌘S", "Seitenleiste ein / aus" },
                { "⌘-Klick / ⇧-Klick", "Mehrere Ordner in der Seitenleiste auswählen" },
                { "⌥⌘R", "Ordnerliste aktualisieren" },
                { "⌘?", "Diese Hilfe" },
            } },
            HelpHeading { "Galerie" },
            HelpKeys { {
                { "← → ↑ ↓", "Rahmen bewegen" },
                { "Leertaste / Return", "Foto groß anzeigen" },
                { "Pos1 / Ende", "Erstes / letztes Foto" },
                { "+ / −", "Vorschaugröße" },
                { "D", "Diashow" },
            } },
            HelpHeading { "Vollansicht" },
            HelpKeys { {
                { "← →", "Blättern" },
                { "Esc / Leertaste", "Zurück zur Galerie" },
                { "X", "Auswählen und weiter" },
                { "I", "Infos" },
                { "F", "Vollbild" },
                { "D", "Diashow starten / beenden" },
            } },
            HelpHeading { "Auswahl" },
            HelpKeys { {
                { "X", "Aus- / abwählen" },
                { "⌘-Klick / ⇧-Klick", "Einzeln / Bereich" },
                { "⇧ + Pfeiltasten", "Auswahl erweitern" },
                { "⌘A", "Alle auswählen" },
                { "⇧⌘A / Esc", "Auswahl aufheben" },
            } },
            HelpHeading { "Dateien" },
            HelpKeys { {
                { "⌘⌫", "In den Papierkorb" },
                { "⌘Z", "Papierkorb rückgängig" },
                { "⇧⌘M", "Verschieben nach …" },
                { "⇧⌘K", "Kopieren nach …" },
                { "⌘P", "Kontaktabzug (PDF)" },
                { "⇧⌘R", "Im Finder zeigen" },
                { "⌘↓", "Mit Standard-App öffnen" },
            } },
            HelpHeading { "Diashow" },
            HelpKeys { {
                { "⇧⌘D", "Diashow starten / beenden" },
                { "Leertaste", "Pause / Weiter" },
                { "← →", "Blättern" },
                { "Esc", "Beenden" },
            } },
        } };
}

HelpTopic faqTopic()
{
    return { "faq", "Fragen & Tipps", "questionmark.circle",
        {
            HelpHeading { "Warum gibt es keine Datenbank?" },
            HelpText { "Pixelhain liest die Fotos direkt aus dem Ordner. Vorschaubilder werden "
                       "beim Anzeigen erzeugt und liegen nur im Arbeitsspeicher. Viele Kameras "
                       "betten fertige Vorschaubilder in ihre Dateien ein, die Pixelhain bevorzugt "
                       "nutzt. Deshalb geht es auch ohne Datenbank schnell, und auf deiner "
                       "Festplatte entstehen weder Cache-Dateien noch Bibliotheken." },
            HelpHeading { "Welche Formate werden unterstützt?" },
            HelpText { "Alle Bildformate, die macOS selbst lesen kann: JPEG, HEIC/HEIF, PNG, TIFF, "
                       "GIF, WebP, BMP und die RAW-Formate gängiger Kameras (z. B. CR2, CR3, NEF, "
                       "ARW, DNG, RAF, ORF, RW2)." },
            HelpHeading { "macOS fragt nach einer Berechtigung" },
            HelpText { "Beim ersten Zugriff auf Schreibtisch, Dokumente, Downloads, iCloud Drive "
                       "oder externe Laufwerke fragt macOS einmal nach. Erlaubst du den Zugriff, "
                       "kann Pixelhain die Fotos dort anzeigen. Nachträglich änderst du das unter "
                       "**Systemeinstellungen → Datenschutz & Sicherheit → Dateien und Ordner**." },
            HelpHeading { "Was speichert Pixelhain?" },
            HelpText { "Nur Einstellungen: den zuletzt geöffneten Ordner, Sortierung, "
                       "Vorschaugröße, Diashow-Intervall und Ähnliches. Sie liegen in den normalen "
                       "macOS-Einstellungen der App. Fotos und Ordner verändert Pixelhain "
                       "ausschließlich, wenn du löschst, verschiebst oder kopierst." },
            HelpHeading { "Ein Ordner mit sehr vielen Fotos ist langsam" },
            HelpBullets { {
                "Kleinere Vorschaubilder (Taste −) laden schneller.",
                "**Unterordner einbeziehen** abschalten, wenn du es nicht brauchst.",
                "Dateien in iCloud Drive, die nur in der Cloud liegen, lädt macOS beim ersten "
                "Anzeigen herunter. Das kann dauern.",
            } },
            HelpHeading { "Neue Dateien erscheinen nicht" },
            HelpText { "Pixelhain überwacht den Ordner nicht ständig. Drücke **⌘R**, um Ordner und "
                       "Ordnerbaum neu einzulesen." },
        } };
}

} // namespace pixelhain
