#include "Localization/GeneralTexts.hpp"

#include <cerrno>
#include <cstring>

#include "Localization/Text.hpp"

namespace tarnwick::L10n::Errors {
std::string cannotOpen(const std::string& file, const std::string& reason) {
  return tr({"Cannot open ", "Kan ", "", "Impossible d’ouvrir ", "No se puede abrir "}) + file +
         tr({": ", " niet openen: ", " kann nicht geöffnet werden: ", " : ", ": "}) + reason;
}
std::string cannotUse(const std::string& file, const std::string& reason) {
  return tr({"Cannot use ", "Kan ", "", "Impossible d’utiliser ", "No se puede usar "}) + file +
         tr({": ", " niet gebruiken: ", " kann nicht verwendet werden: ", " : ", ": "}) + reason;
}
std::string cannotRead(const std::string& file) {
  return tr({"Cannot read ", "Kan ", "", "Impossible de lire ", "No se puede leer "}) + file +
         tr({". Is it a file of this app?", " niet lezen. Is het een bestand van deze app?",
             " kann nicht gelesen werden. Ist es eine Datei dieser App?",
             ". S’agit-il d’un fichier de cette app ?", ". ¿Es un archivo de esta app?"});
}
std::string savingFailed(const std::string& description) {
  return tr({"Saving failed: ", "Opslaan mislukt: ", "Speichern fehlgeschlagen: ",
             "Échec de l’enregistrement : ", "No se pudo guardar: "}) +
         description;
}
std::string savingFailedAt(const std::string& file, const std::string& reason) {
  return savingFailed(file + tr({": ", ": ", ": ", " : ", ": "}) + reason);
}
std::string savingFailedAt(const std::string& file, int errorCode) {
  return savingFailedAt(file, systemCause(errorCode));
}
std::string systemCause(int errorCode) {
  switch (errorCode) {
  case ENOENT:
    return tr({"the folder does not exist.", "de map bestaat niet.", "der Ordner existiert nicht.",
               "le dossier n’existe pas.", "la carpeta no existe."});
  case EACCES:
  case EPERM:
    return tr({"you have no permission to write there.", "je hebt daar geen schrijfrechten.",
               "dir fehlt dort die Schreibberechtigung.",
               "vous n’avez pas le droit d’écrire à cet endroit.",
               "no tienes permiso para escribir ahí."});
  case EROFS:
    return tr({"the disk is read-only.", "de schijf is alleen-lezen.",
               "der Datenträger ist schreibgeschützt.", "le disque est en lecture seule.",
               "el disco es de solo lectura."});
  case ENOSPC:
  case EDQUOT:
    return tr({"the disk is full.", "de schijf is vol.", "der Datenträger ist voll.",
               "le disque est plein.", "el disco está lleno."});
  case EISDIR:
    return tr({"a folder of that name is in the way.", "er staat een map met die naam in de weg.",
               "ein Ordner mit diesem Namen ist im Weg.", "un dossier portant ce nom est déjà là.",
               "ya hay una carpeta con ese nombre."});
  case ENOTDIR:
    return tr({"part of the path is not a folder.", "een deel van het pad is geen map.",
               "ein Teil des Pfads ist kein Ordner.", "une partie du chemin n’est pas un dossier.",
               "una parte de la ruta no es una carpeta."});
  case ENAMETOOLONG:
    return tr({"the name is too long.", "de naam is te lang.", "der Name ist zu lang.",
               "le nom est trop long.", "el nombre es demasiado largo."});
  case EEXIST:
    return tr({"a file of that name is in the way.", "er staat een bestand met die naam in de weg.",
               "eine Datei mit diesem Namen ist im Weg.", "un fichier portant ce nom est déjà là.",
               "ya hay un archivo con ese nombre."});
  case EBUSY:
  case ETXTBSY:
    return tr({"the file is in use.", "het bestand is in gebruik.", "die Datei wird verwendet.",
               "le fichier est en cours d’utilisation.", "el archivo está en uso."});
  case EFBIG:
    return tr({"the file is too large for the disk.", "het bestand is te groot voor de schijf.",
               "die Datei ist zu groß für den Datenträger.",
               "le fichier est trop volumineux pour le disque.",
               "el archivo es demasiado grande para el disco."});
  case ENOMEM:
    return tr({"there is not enough memory.", "er is niet genoeg geheugen.",
               "es ist nicht genug Arbeitsspeicher frei.", "la mémoire est insuffisante.",
               "no hay memoria suficiente."});
  case EIO:
    return tr({"the disk reported an error.", "de schijf meldde een fout.",
               "der Datenträger meldete einen Fehler.", "le disque a signalé une erreur.",
               "el disco informó de un error."});
  default:
    return tr({"the system reports: ", "het systeem meldt: ", "das System meldet: ",
               "le système indique : ", "el sistema indica: "}) +
           std::strerror(errorCode) + ".";
  }
}
std::string readCause(int errorCode) {
  switch (errorCode) {
  case ENOENT:
    return tr({"the file does not exist.", "het bestand bestaat niet.",
               "die Datei existiert nicht.", "le fichier n’existe pas.", "el archivo no existe."});
  case EACCES:
  case EPERM:
    return tr({"you have no permission to read it.", "je hebt geen rechten om het te lezen.",
               "dir fehlt die Berechtigung, sie zu lesen.", "vous n’avez pas le droit de le lire.",
               "no tienes permiso para leerlo."});
  case EISDIR:
    return tr({"it is a folder.", "het is een map.", "das ist ein Ordner.", "c’est un dossier.",
               "es una carpeta."});
  case EINVAL:
    return tr({"it is not an ordinary file.", "het is geen gewoon bestand.",
               "das ist keine gewöhnliche Datei.", "ce n’est pas un fichier ordinaire.",
               "no es un archivo normal."});
  case EFBIG:
    return tr({"it is larger than 128 MiB, more than the flash of any supported chip.",
               "het is groter dan 128 MiB, meer dan het flashgeheugen van elke ondersteunde chip.",
               "sie ist größer als 128 MiB, mehr als der Flash-Speicher jedes unterstützten Chips.",
               "il dépasse 128 Mio, plus que la mémoire flash de toute puce prise en charge.",
               "ocupa más de 128 MiB, más que la memoria flash de cualquier chip compatible."});
  default: return systemCause(errorCode);
  }
}
std::string selectPortFirst() {
  return tr({"Select a serial port first.", "Kies eerst een seriële poort.",
             "Wähle zuerst eine serielle Schnittstelle.", "Choisissez d’abord un port série.",
             "Elige primero un puerto serie."});
}
std::string somethingWentWrong() {
  return tr({"Something went wrong", "Er ging iets mis", "Etwas ist schiefgelaufen",
             "Un problème est survenu", "Algo ha salido mal"});
}
} // namespace tarnwick::L10n::Errors

namespace tarnwick::L10n::Settings {
std::string connection() {
  return tr({"Connection", "Verbinding", "Verbindung", "Connexion", "Conexión"});
}
std::string speedWhileFlashing() {
  return tr({"Speed while flashing", "Snelheid tijdens flashen", "Geschwindigkeit beim Flashen",
             "Vitesse de flashage", "Velocidad de flasheo"});
}
std::string resetIntoBootloader() {
  return tr({"Reset into bootloader", "Reset naar bootloader", "Reset in den Bootloader",
             "Redémarrage en bootloader", "Reinicio al bootloader"});
}
std::string resetModeName(ResetMode mode) {
  switch (mode) {
  case ResetMode::auto_:
    return tr({"Automatic", "Automatisch", "Automatisch", "Automatique", "Automático"});
  case ResetMode::classic:
    return tr({"USB serial adapter (DTR/RTS)", "USB-serieeladapter (DTR/RTS)",
               "USB-Seriell-Adapter (DTR/RTS)", "Adaptateur USB-série (DTR/RTS)",
               "Adaptador USB-serie (DTR/RTS)"});
  case ResetMode::usbJTAG:
    return tr({"Built-in USB (S3, C3, C6)", "Ingebouwde USB (S3, C3, C6)",
               "Integriertes USB (S3, C3, C6)", "USB intégré (S3, C3, C6)",
               "USB integrado (S3, C3, C6)"});
  case ResetMode::manual:
    return tr({"Manual (BOOT button)", "Handmatig (BOOT-knop)", "Manuell (BOOT-Taste)",
               "Manuel (bouton BOOT)", "Manual (botón BOOT)"});
  }
  return {};
}
std::string flashMemory() {
  return tr({"Flash memory", "Flashgeheugen", "Flash-Speicher", "Mémoire flash", "Memoria flash"});
}
std::string flashModeLabel() {
  return tr({"Flash mode", "Flashmodus", "Flash-Modus", "Mode flash", "Modo flash"});
}
static std::string asInFile() {
  return tr({"As in file", "Zoals in bestand", "Wie in der Datei", "Comme dans le fichier",
             "Como en el archivo"});
}
std::string flashModeName(FlashMode mode) {
  switch (mode) {
  case FlashMode::keep: return asInFile();
  case FlashMode::qio: return "QIO";
  case FlashMode::qout: return "QOUT";
  case FlashMode::dio: return "DIO";
  case FlashMode::dout: return "DOUT";
  }
  return {};
}
std::string flashSizeLabel() {
  return tr(
      {"Flash size", "Flashgrootte", "Flash-Größe", "Taille de la flash", "Tamaño de la flash"});
}
std::string flashSizeName(FlashSize size) {
  switch (size) {
  case FlashSize::keep: return asInFile();
  case FlashSize::mb1: return "1MB";
  case FlashSize::mb2: return "2MB";
  case FlashSize::mb4: return "4MB";
  case FlashSize::mb8: return "8MB";
  case FlashSize::mb16: return "16MB";
  }
  return {};
}
std::string clearOTASelection() {
  return tr({"Clear OTA selection", "OTA-keuze wissen", "OTA-Auswahl löschen",
             "Effacer la sélection OTA", "Borrar la selección OTA"});
}
std::string verifyAfterWriting() {
  return tr({"Verify after writing", "Controleren na schrijven", "Nach dem Schreiben prüfen",
             "Vérifier après l’écriture", "Verificar tras escribir"});
}
} // namespace tarnwick::L10n::Settings

namespace tarnwick::L10n::Product {
std::string espDetectAutomatically() {
  return tr({"ESP (detect automatically)", "ESP (automatisch herkennen)",
             "ESP (automatisch erkennen)", "ESP (détection automatique)",
             "ESP (detectar automáticamente)"});
}
std::string productName() {
  return tr(
      {"Product name", "Productnaam", "Produktname", "Nom du produit", "Nombre del producto"});
}
std::string target() { return tr({"Target", "Doel", "Ziel", "Cible", "Destino"}); }
std::string notes() { return tr({"Notes", "Notities", "Notizen", "Notes", "Notas"}); }
} // namespace tarnwick::L10n::Product
