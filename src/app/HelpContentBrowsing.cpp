#include "app/HelpContent.h"

namespace pixelhain {

HelpTopic startTopic()
{
    return { "start", "Erste Schritte", "sparkles",
        {
            HelpText { "**Pixelhain** ist ein schneller Fotobrowser für Ordner auf deinem Mac. Du "
                       "wählst einen Ordner, und sofort erscheint eine Galerie mit "
                       "Vorschaubildern. Es gibt keine Bibliothek, keinen Import und keine "
                       "Datenbank: Pixelhain zeigt immer genau das, was gerade im Ordner liegt." },
            HelpHeading { "Einen Ordner öffnen" },
            HelpBullets { {
                "Klicke in der Toolbar auf **Ordner öffnen** oder drücke **⌘O**.",
                "Oder ziehe einen Ordner aus dem Finder ins Fenster oder auf das Pixelhain-Symbol "
                "im Dock.",
                "Ziehst du ein einzelnes Bild hinein, öffnet Pixelhain dessen Ordner und zeigt das "
                "Bild direkt in der Vollansicht.",
                "Beim nächsten Start öffnet Pixelhain automatisch den zuletzt angezeigten Ordner.",
            } },
            HelpHeading { "Das Fenster im Überblick" },
            HelpBullets { {
                "**Seitenleiste** (links): der geöffnete Ordner und seine Unterordner als Baum.",
                "**Galerie** (Mitte): Vorschaubilder mit Dateiname und Auflösung.",
                "**Toolbar** (oben): Ordner, Vorschaugröße, Ansicht, Diashow, Papierkorb, "
                "Aktionen, Teilen und Suche.",
                "**Statusleiste** (unten): Anzahl der Fotos, Anzahl der ausgewählten und Meldungen "
                "zur letzten Aktion.",
            } },
            HelpTip { "Ein Klick auf ein Foto öffnet es groß. Zum Auswählen nimmst du den Kreis "
                      "oben links am Vorschaubild, ⌘-Klick oder die Taste X." },
        } };
}

HelpTopic galleryTopic()
{
    return { "gallery", "Galerie & Seitenleiste", "square.grid.3x3",
        {
            HelpHeading { "Ordnerbaum in der Seitenleiste" },
            HelpText { "Ganz oben steht fett der geöffnete Ordner, darunter seine Unterordner. Mit "
                       "dem Dreieck klappst du einen Zweig auf oder zu." },
            HelpBullets { {
                "Ein Klick auf einen Ordner zeigt dessen Fotos. Der aktuell gezeigte Ordner hat "
                "ein gefülltes Symbol.",
                "Die Zahl rechts neben einem Ordner gibt an, wie viele Fotos **direkt** darin "
                "liegen. Fotos in Unterordnern zählen dort nicht mit. Ordner ohne Fotos haben "
                "keine Zahl.",
                "**Mehrere Ordner auf einmal:** Mit **⌘-Klick** wählst du weitere Ordner dazu, mit "
                "**⇧-Klick** einen ganzen Bereich. Die Galerie zeigt dann die Fotos aller "
                "ausgewählten Ordner zusammen, sortiert wie eingestellt. Rechtsklick bietet "
                "außerdem *Zur Auswahl hinzufügen* und *Aus Auswahl entfernen*.",
                "Hat die Seitenleiste den Fokus, bewegst du dich mit den Pfeiltasten durch den "
                "Baum.",
                "Der **↑-Pfeil** oben in der Seitenleiste oder **⌘↑** macht den übergeordneten "
                "Ordner zur obersten Ebene.",
                "Rechtsklick auf einen Ordner: *Als oberste Ebene festlegen*, *Im Finder zeigen*, "
                "*Ordnerbaum neu laden*.",
                "Mit **⌃⌘S** oder dem Seitenleisten-Knopf in der Toolbar blendest du die "
                "Seitenleiste ein und aus.",
            } },
            HelpText { "Den Schieberegler in der Toolbar oder die Tasten **+** und **−** stellen "
                       "die Größe der Vorschaubilder ein." },
            HelpText { "Unter jedem Bild stehen Dateiname und Auflösung in Pixeln. Beides lässt "
                       "sich im Menü **Ansicht** abschalten." },
            HelpText { "Animierte Dateien tragen unten rechts ein kleines Etikett, etwa „GIF“." },
            HelpHeading { "Sortieren, filtern, Unterordner" },
            HelpBullets { {
                "Im Menü **Ansicht** (Pfeil-Symbol in der Toolbar) sortierst du nach Name, "
                "Änderungsdatum oder Dateigröße, wahlweise auf- oder absteigend.",
                "**Unterordner einbeziehen** zeigt die Fotos aller Unterordner zusammen in einer "
                "Galerie.",
                "Das Suchfeld rechts oben filtert die Galerie nach dem Dateinamen.",
                "**⌘R** liest Ordner und Ordnerbaum neu ein, zum Beispiel nachdem du im Finder "
                "Dateien hinzugefügt hast.",
            } },
            HelpHeading { "Mit der Tastatur durch die Galerie" },
            HelpKeys { {
                { "← → ↑ ↓", "Rahmen zum nächsten Foto bewegen" },
                { "Leertaste / Return", "Umrandetes Foto groß anzeigen" },
                { "Pos1 / Ende", "Zum ersten bzw. letzten Foto" },
                { "+ / −", "Vorschaubilder größer / kleiner" },
            } },
        } };
}

} // namespace pixelhain
