#include "app/HelpContent.h"

namespace pixelhain {

HelpTopic viewerTopic()
{
    return { "viewer", "Vollansicht & Zoom", "photo",
        {
            HelpText {
                "Ein **Klick** auf ein Vorschaubild öffnet die Vollansicht. Die nächsten Bilder "
                "lädt Pixelhain schon im Hintergrund, deshalb geht das Blättern ohne Wartezeit." },
            HelpKeys { {
                { "← →  (oder ↑ ↓)", "Vorheriges / nächstes Foto" },
                { "Esc, Leertaste, Return", "Zurück zur Galerie" },
                { "Pos1 / Ende", "Erstes / letztes Foto" },
                { "X", "Auswählen und weiter zum nächsten Foto" },
                { "I", "Infos ein- / ausblenden (Auflösung, Kamera, Objektiv, Belichtung)" },
                { "F", "Vollbild ein / aus" },
                { "D", "Diashow ab diesem Foto" },
                { "⌘⌫", "Foto in den Papierkorb" },
            } },
            HelpText { "**Doppelklick** zoomt auf 250 %, ein weiterer Doppelklick zeigt wieder das "
                       "ganze Bild." },
            HelpText {
                "Auf dem Trackpad zoomst du stufenlos mit **zwei Fingern auseinanderziehen**." },
            HelpText { "Bei vergrößertem Bild **ziehst** du den Ausschnitt mit der Maus." },
            HelpText { "Beim Zoomen lädt Pixelhain das Bild in voller Auflösung nach." },
            HelpText { "In der oberen Leiste findest du Schließen, Position und Dateiname sowie "
                       "Knöpfe für Auswählen, Infos, Diashow, Papierkorb, Teilen und Vollbild. Die "
                       "Pfeile am linken und rechten Rand blättern." },
            HelpTip { "Animierte GIFs (und animierte PNG/WebP) laufen in der Vollansicht als "
                      "Animation ab." },
        } };
}

HelpTopic slideshowTopic()
{
    return { "slideshos", "Diashow", "play.rectangle",
        {
            HelpText { "Starte die Diashow mit dem **Diashow**-Knopf in der Toolbar, mit **⇧⌘D** "
                       "oder in der Galerie mit **D**." },
            HelpBullets { {
                "Sind **mehrere Fotos ausgewählt**, zeigt die Diashow nur diese. Sonst zeigt sie "
                "alle Fotos des Ordners.",
                "Sie beginnt beim umrandeten bzw. gerade angezeigten Foto.",
                "Die Diashow läuft im Vollbild mit weicher Überblendung, und der Mauszeiger wird "
                "ausgeblendet.",
            } },
            HelpHeading { "Manuell blättern" },
            HelpKeys { {
                { "← →", "Blättern" },
                { "Leertaste", "Pause / Weiter" },
                { "Esc", "Beenden" },
            } },
            HelpText { "Im Menü **Fotos** stellst du das **Intervall** (2 bis 20 Sekunden) ein und "
                       "schaltest die **zufällige Reihenfolge** ein oder aus." },
        } };
}

} // namespace pixelhain
