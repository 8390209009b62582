<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="fr">
<context>
    <name>Display Info</name>
    <message>
        <source>Quillon - Kavendi: %1
</source>
        <comment>%1 is the message</comment>
        <translation>Quillon - Kavendi : %1
</translation>
    </message>
</context>
<context>
    <name>Info</name>
    <message>
        <source>Unable to allocate memory</source>
        <comment>Error message</comment>
        <translation>Impossible d&apos;allouer la mémoire</translation>
    </message>
    <message>
        <source>Too many measure values</source>
        <comment>Error message</comment>
        <translation>Trop de valeurs de mesure</translation>
    </message>
    <message>
        <source>Error locking transaction</source>
        <comment>Error message</comment>
        <translation>Erreur de verrouillage de la transaction</translation>
    </message>
    <message>
        <source>Unable to create KVD file</source>
        <comment>Error message</comment>
        <translation>Impossible de créer le fichier KVD</translation>
    </message>
    <message>
        <source>Unable to write in Index file</source>
        <comment>Error message</comment>
        <translation>Impossible d&apos;écrire dans le fichier d&apos;index</translation>
    </message>
    <message>
        <source>Unable to create DataBase file</source>
        <comment>Error message</comment>
        <translation>Impossible de créer le fichier de données</translation>
    </message>
    <message>
        <source>Unable to write in DataBase file</source>
        <comment>Error message</comment>
        <translation>Impossible d&apos;écrire dans le fichier de données</translation>
    </message>
    <message>
        <source>Unable to close Index file</source>
        <comment>Error message</comment>
        <translation>Impossible de fermer le fichier d&apos;index</translation>
    </message>
    <message>
        <source>Unable close DataBase file</source>
        <comment>Error message</comment>
        <translation>Impossible de fermer le fichier de données</translation>
    </message>
    <message>
        <source>Unable to open index file</source>
        <comment>Error message</comment>
        <translation>Impossible d&apos;ouvrir le fichier d&apos;index</translation>
    </message>
    <message>
        <source>Unable to read index file</source>
        <comment>Error message</comment>
        <translation>Impossible de lire le fichier d&apos;index</translation>
    </message>
    <message>
        <source>Reposition in DataBase file fail</source>
        <comment>Error message</comment>
        <translation>Échec du repositionnement dans le fichier de données</translation>
    </message>
    <message>
        <source>Unable to update Index File</source>
        <comment>Error message</comment>
        <translation>Impossible de mettre à jour le fichier d&apos;index</translation>
    </message>
    <message>
        <source>Unable to open DataBase file</source>
        <comment>Error message</comment>
        <translation>Impossible d&apos;ouvrir le fichier de données</translation>
    </message>
    <message>
        <source>Unable to read DataBase file</source>
        <comment>Error message</comment>
        <translation>Impossible de lire le fichier de données</translation>
    </message>
    <message>
        <source>Unable to close DataBase</source>
        <comment>Error message</comment>
        <translation>Impossible de fermer la base de données</translation>
    </message>
    <message>
        <source>Unable to update DataBase file</source>
        <comment>Error message</comment>
        <translation>Impossible de mettre à jour le fichier de données</translation>
    </message>
</context>
<context>
    <name>KVDConfig</name>
    <message>
        <source>Unable to read Kavendi configuration file (built in).
</source>
        <translation>Impossible de lire le fichier de configuration de Kavendi (intégré).
</translation>
    </message>
    <message>
        <source>There is nothing to display.
</source>
        <translation>Il n&apos;y a rien à afficher.
</translation>
    </message>
    <message>
        <source>Field %1</source>
        <comment>Default name of a measure field</comment>
        <translation>Champ %1</translation>
    </message>
    <message>
        <source>These files were ignored: their number of values is not between 0 and %1.
%2
</source>
        <comment>%2 is a list of file names</comment>
        <translation>Ces fichiers ont été ignorés : leur nombre de valeurs n&apos;est pas compris entre 0 et %1.
%2
</translation>
    </message>
    <message>
        <source>Unable to read Kavendi configuration file.
</source>
        <translation>Impossible de lire le fichier de configuration de Kavendi.
</translation>
    </message>
</context>
<context>
    <name>KVDConfigDlg</name>
    <message>
        <source>Enter a label for the %1 metric</source>
        <comment>%1 is a metric name</comment>
        <translation>Saisissez un libellé pour la métrique %1</translation>
    </message>
    <message>
        <source>Enter a label for field %1 of %2 metric</source>
        <translation>Saisissez un libellé pour le champ %1 de la métrique %2</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Ignore</source>
        <translation>Ignorer</translation>
    </message>
    <message>
        <source>Record Selection</source>
        <comment>Group Box Title</comment>
        <translation>Sélection des enregistrements</translation>
    </message>
    <message>
        <source>From : </source>
        <translation>Du : </translation>
    </message>
    <message>
        <source>To: </source>
        <translation>Au : </translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
</context>
<context>
    <name>KVDConfigMsg</name>
    <message>
        <source>Kavendi Configuration</source>
        <comment>Message box title</comment>
        <translation>Configuration de Kavendi</translation>
    </message>
    <message>
        <source>Metric detected.
Do you want to configure it?</source>
        <comment>Used in a message box</comment>
        <translation>Métrique détectée.
Voulez-vous la configurer ?</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Ignore</source>
        <translation>Ignorer</translation>
    </message>
</context>
<context>
    <name>KVDCurve</name>
    <message>
        <source>Field %1 does not exist in %2 (1 to %3)
</source>
        <comment>%1 is a field number, %2 a file name, %3 the field count</comment>
        <translation>Le champ %1 n&apos;existe pas dans %2 (1 à %3)
</translation>
    </message>
    <message>
        <source>Can&apos;t open file: %1
</source>
        <comment>%1 is a file name</comment>
        <translation>Impossible d&apos;ouvrir le fichier : %1
</translation>
    </message>
    <message>
        <source>KVD Processing...</source>
        <comment>Progress Message</comment>
        <translation>Traitement KVD...</translation>
    </message>
    <message>
        <source>&amp;Stop Loading</source>
        <translation>&amp;Arrêter le chargement</translation>
    </message>
    <message>
        <source>Cannot hold the %1 records of %2 in memory
</source>
        <comment>%1 is a count, %2 a file name</comment>
        <translation>Impossible de garder en mémoire les %1 enregistrements de %2
</translation>
    </message>
</context>
<context>
    <name>KVDCustomSelect</name>
    <message>
        <source>Measure</source>
        <translation>Mesure</translation>
    </message>
    <message>
        <source>User</source>
        <translation>Utilisateur</translation>
    </message>
    <message>
        <source>Date</source>
        <translation>Date</translation>
    </message>
    <message>
        <source>FileId</source>
        <translation>Id. fichier</translation>
    </message>
    <message>
        <source>Field %1</source>
        <translation>Champ %1</translation>
    </message>
    <message>
        <source>Kavendi Request has failed
</source>
        <translation>La requête Kavendi a échoué
</translation>
    </message>
    <message>
        <source>Select All</source>
        <translation>Tout sélectionner</translation>
    </message>
    <message>
        <source>Invert Selection</source>
        <translation>Inverser la sélection</translation>
    </message>
</context>
<context>
    <name>KVDDialogFrame</name>
    <message>
        <source>Kavendi</source>
        <comment>Default title of a dialog</comment>
        <translation>Kavendi</translation>
    </message>
</context>
<context>
    <name>KVDEventSet</name>
    <message>
        <source>Record Selection</source>
        <comment>Title of a Group Box</comment>
        <translation>Sélection des enregistrements</translation>
    </message>
    <message>
        <source>Event date: </source>
        <translation>Date de l&apos;événement : </translation>
    </message>
    <message>
        <source>Label: </source>
        <translation>Libellé : </translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
</context>
<context>
    <name>KVDMeasureFile</name>
    <message>
        <source>Invalid number of measure values: %1 (0 to %2)
</source>
        <translation>Nombre de valeurs de mesure incorrect : %1 (0 à %2)
</translation>
    </message>
    <message>
        <source>Can&apos;t open file: %1
</source>
        <comment>%1 is a file name</comment>
        <translation>Impossible d&apos;ouvrir le fichier : %1
</translation>
    </message>
    <message>
        <source>Not a measure data file: %1
</source>
        <comment>%1 is a file name</comment>
        <translation>Ce n&apos;est pas un fichier de données de mesure : %1
</translation>
    </message>
</context>
<context>
    <name>KVDRangeSelect</name>
    <message>
        <source>Record Selection</source>
        <translation>Sélection des enregistrements</translation>
    </message>
    <message>
        <source>From : </source>
        <translation>Du : </translation>
    </message>
    <message>
        <source>To: </source>
        <translation>Au : </translation>
    </message>
    <message>
        <source>OK</source>
        <translation>OK</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>Annuler</translation>
    </message>
</context>
<context>
    <name>KVDSampleWriter</name>
    <message>
        <source>A measure or user name cannot hold &quot;/&quot;: %1, %2
</source>
        <translation>Un nom de mesure ou d&apos;utilisateur ne peut pas contenir « / » : %1, %2
</translation>
    </message>
    <message>
        <source>Can&apos;t create file: %1
</source>
        <comment>%1 is a file name</comment>
        <translation>Impossible de créer le fichier : %1
</translation>
    </message>
    <message>
        <source>%1 would outgrow 4 GiB, the most its index can address
</source>
        <comment>%1 is a file name</comment>
        <translation>%1 dépasserait 4 Gio, le maximum que son index peut adresser
</translation>
    </message>
    <message>
        <source>Can&apos;t write file: %1
</source>
        <comment>%1 is a file name</comment>
        <translation>Impossible d&apos;écrire le fichier : %1
</translation>
    </message>
    <message>
        <source>No measure file is being written
</source>
        <translation>Aucun fichier de mesure n&apos;est en cours d&apos;écriture
</translation>
    </message>
    <message>
        <source>A record of %1 values cannot go to a measure of %2 values
</source>
        <translation>Un enregistrement de %1 valeurs ne peut pas aller dans une mesure de %2 valeurs
</translation>
    </message>
    <message>
        <source>The number of users must be from 1 to 1000, not %1
</source>
        <translation>Le nombre d&apos;utilisateurs doit aller de 1 à 1000, et non %1
</translation>
    </message>
    <message>
        <source>The number of days must be from 1 to 36500, not %1
</source>
        <translation>Le nombre de jours doit aller de 1 à 36500, et non %1
</translation>
    </message>
    <message>
        <source>The number of records a day must be from 1 to 10000, not %1
</source>
        <translation>Le nombre d&apos;enregistrements par jour doit aller de 1 à 10000, et non %1
</translation>
    </message>
    <message>
        <source>Records from %1 to %2 do not fit in 32-bit dates (1970 to 2106)
</source>
        <translation>Des enregistrements du %1 au %2 ne tiennent pas dans des dates sur 32 bits (1970 à 2106)
</translation>
    </message>
    <message>
        <source>Can&apos;t create directory: %1
</source>
        <comment>%1 is a directory</comment>
        <translation>Impossible de créer le dossier : %1
</translation>
    </message>
</context>
<context>
    <name>KVDSchedule</name>
    <message>
        <source>Week %1</source>
        <comment>Calendar axis cell</comment>
        <translation>Sem. %1</translation>
    </message>
    <message>
        <source>W %1</source>
        <comment>Calendar axis cell, short form of Week %1</comment>
        <translation>S %1</translation>
    </message>
</context>
<context>
    <name>QAKVD</name>
    <message>
        <source>An Event already exists for this date
</source>
        <translation>Un événement existe déjà à cette date
</translation>
    </message>
    <message>
        <source>Maybe too hard for the device-&gt; Removing curve form view
</source>
        <comment>Warning message</comment>
        <translation>Sans doute trop difficile pour le périphérique -&gt; la courbe est retirée de la vue
</translation>
    </message>
    <message>
        <source>Kavendi Request has failed
</source>
        <translation>La requête Kavendi a échoué
</translation>
    </message>
    <message>
        <source>&amp;Kavendi</source>
        <comment>Menu Item</comment>
        <translation>&amp;Kavendi</translation>
    </message>
    <message>
        <source>Monitoring</source>
        <comment>Menu Item</comment>
        <translation>Surveillance</translation>
    </message>
    <message>
        <source>Nothing to display for user %1
</source>
        <translation>Rien à afficher pour l&apos;utilisateur %1
</translation>
    </message>
    <message>
        <source>Custom Curves</source>
        <comment>Menu Item</comment>
        <translation>Courbes personnalisées</translation>
    </message>
    <message>
        <source>Scale</source>
        <comment>Menu Item</comment>
        <translation>Échelle</translation>
    </message>
    <message>
        <source>Year</source>
        <comment>Menu Item</comment>
        <translation>Année</translation>
    </message>
    <message>
        <source>Month</source>
        <comment>Menu Item</comment>
        <translation>Mois</translation>
    </message>
    <message>
        <source>Hour</source>
        <comment>Menu Item</comment>
        <translation>Heure</translation>
    </message>
    <message>
        <source>Customize</source>
        <comment>Menu Item</comment>
        <translation>Personnaliser</translation>
    </message>
    <message>
        <source>Events</source>
        <comment>Menu Item</comment>
        <translation>Événements</translation>
    </message>
    <message>
        <source>Delete Record</source>
        <comment>Menu Item</comment>
        <translation>Supprimer des enregistrements</translation>
    </message>
    <message>
        <source>Custom Delete</source>
        <comment>Menu Item</comment>
        <translation>Suppression personnalisée</translation>
    </message>
    <message>
        <source>Range Delete</source>
        <comment>Menu Item</comment>
        <translation>Suppression par période</translation>
    </message>
    <message>
        <source>Export</source>
        <comment>Menu Item</comment>
        <translation>Exporter</translation>
    </message>
    <message>
        <source>Set Event</source>
        <comment>Menu Item</comment>
        <translation>Placer un événement</translation>
    </message>
    <message>
        <source>Delete Event</source>
        <comment>Menu Item</comment>
        <translation>Supprimer l&apos;événement</translation>
    </message>
    <message>
        <source>Hide Event</source>
        <comment>Menu Item</comment>
        <translation>Masquer l&apos;événement</translation>
    </message>
    <message>
        <source>Curve Properties</source>
        <comment>Menu Item</comment>
        <translation>Propriétés de la courbe</translation>
    </message>
    <message>
        <source>Change Curve Color</source>
        <comment>Menu Item</comment>
        <translation>Changer la couleur de la courbe</translation>
    </message>
    <message>
        <source>Hide Curve</source>
        <comment>Menu Item</comment>
        <translation>Masquer la courbe</translation>
    </message>
    <message>
        <source>Set Max Value</source>
        <comment>Menu Item</comment>
        <translation>Fixer la valeur maximale</translation>
    </message>
    <message>
        <source>Change Label</source>
        <comment>Menu Item</comment>
        <translation>Changer le libellé</translation>
    </message>
    <message>
        <source>Scale Right</source>
        <comment>Menu Item</comment>
        <translation>Échelle de droite</translation>
    </message>
    <message>
        <source>Scale Left</source>
        <comment>Menu Item</comment>
        <translation>Échelle de gauche</translation>
    </message>
    <message>
        <source>Event Properties</source>
        <comment>Menu Item</comment>
        <translation>Propriétés de l&apos;événement</translation>
    </message>
    <message>
        <source>Kavendi</source>
        <comment>Default title for message box</comment>
        <translation>Kavendi</translation>
    </message>
    <message>
        <source>Enter new label</source>
        <translation>Saisissez le nouveau libellé</translation>
    </message>
    <message>
        <source>Event properties</source>
        <comment>Menu Item</comment>
        <translation>Propriétés de l&apos;événement</translation>
    </message>
    <message>
        <source>Edit Event</source>
        <comment>Menu Item</comment>
        <translation>Modifier l&apos;événement</translation>
    </message>
    <message>
        <source>Stop Loading</source>
        <translation>Arrêter le chargement</translation>
    </message>
    <message>
        <source>%1 %2 Kavendi Request has failed
</source>
        <translation>%1 %2 La requête Kavendi a échoué
</translation>
    </message>
    <message>
        <source>&amp;Stop Loading</source>
        <translation>&amp;Arrêter le chargement</translation>
    </message>
    <message>
        <source>KVD Processing...</source>
        <translation>Traitement KVD...</translation>
    </message>
    <message>
        <source>ZANTH_KVD_ROOT not set.
</source>
        <translation>ZANTH_KVD_ROOT n&apos;est pas défini.
</translation>
    </message>
    <message>
        <source>Clear</source>
        <translation>Effacer</translation>
    </message>
    <message>
        <source>&lt;b&gt; Clear &lt;/b&gt;&lt;br&gt;Clears all graphics from the viewer window</source>
        <translation>&lt;b&gt; Effacer &lt;/b&gt;&lt;br&gt;Efface tous les graphiques de la fenêtre du visualiseur</translation>
    </message>
    <message>
        <source>Hide Events</source>
        <translation>Masquer les événements</translation>
    </message>
    <message>
        <source>&lt;b&gt; Hide Events &lt;/b&gt;&lt;br&gt;Hides all events markers in the viewer window</source>
        <translation>&lt;b&gt; Masquer les événements &lt;/b&gt;&lt;br&gt;Masque tous les repères d&apos;événements de la fenêtre du visualiseur</translation>
    </message>
    <message>
        <source>Floating Schedule</source>
        <translation>Calendrier flottant</translation>
    </message>
    <message>
        <source>&lt;b&gt; Floating Schedule &lt;/b&gt;&lt;br&gt;Toggles positioning of the calendar depending on displayed values</source>
        <translation>&lt;b&gt; Calendrier flottant &lt;/b&gt;&lt;br&gt;Active ou désactive le placement du calendrier selon les valeurs affichées</translation>
    </message>
    <message>
        <source>Kavendi</source>
        <translation>Kavendi</translation>
    </message>
    <message>
        <source>Kavendi </source>
        <comment>Window title</comment>
        <translation>Kavendi </translation>
    </message>
</context>
<context>
    <name>QARes</name>
    <message>
        <source>%1: %2</source>
        <comment>file, error</comment>
        <translation>%1 : %2</translation>
    </message>
    <message>
        <source>element without a name</source>
        <translation>élément sans nom</translation>
    </message>
    <message>
        <source>colour without three components from 0 to 255</source>
        <translation>couleur sans trois composantes de 0 à 255</translation>
    </message>
    <message>
        <source>unknown element %1</source>
        <translation>élément inconnu %1</translation>
    </message>
    <message>
        <source>integer expected</source>
        <translation>entier attendu</translation>
    </message>
    <message>
        <source>true or false expected</source>
        <translation>true ou false attendu</translation>
    </message>
    <message>
        <source>text outside a value</source>
        <translation>texte en dehors d&apos;une valeur</translation>
    </message>
    <message>
        <source>document type declarations are not allowed</source>
        <translation>les déclarations de type de document ne sont pas autorisées</translation>
    </message>
    <message>
        <source>empty document</source>
        <translation>document vide</translation>
    </message>
    <message>
        <source>resource file: %1 (line %2)</source>
        <translation>fichier de ressources : %1 (ligne %2)</translation>
    </message>
    <message>
        <source>%1: not a regular file</source>
        <translation>%1 : ce n&apos;est pas un fichier ordinaire</translation>
    </message>
    <message>
        <source>groups nested deeper than %1</source>
        <translation>groupes imbriqués sur plus de %1 niveaux</translation>
    </message>
</context>
<context>
    <name>QAStKvdPlugin</name>
    <message>
        <source>en</source>
        <comment>Language code of this catalogue</comment>
        <translation>fr</translation>
    </message>
    <message>
        <source>The Kavendi</source>
        <comment>KVD Plugin Description</comment>
        <translation>Le Kavendi</translation>
    </message>
    <message>
        <source>Orvane Quillon Gui Team</source>
        <comment>KVD Plugin Author</comment>
        <translation>Équipe IHM d&apos;Orvane Quillon</translation>
    </message>
    <message>
        <source>Version 1.0.0</source>
        <comment>KVD Plugin Version</comment>
        <translation>Version 1.0.0</translation>
    </message>
    <message>
        <source>Orvane Quillon Kavendi</source>
        <comment>Plugin Name</comment>
        <translation>Orvane Quillon Kavendi</translation>
    </message>
    <message>
        <source>Orvane Quillon Kavendi Description</source>
        <comment>Plugin Description</comment>
        <translation>Description d&apos;Orvane Quillon Kavendi</translation>
    </message>
    <message>
        <source>Orvane</source>
        <comment>Plugin Company Name</comment>
        <translation>Orvane</translation>
    </message>
    <message>
        <source>Orvane and Quillon are trademarks of Orvane.</source>
        <comment>Plugin Company Description</comment>
        <translation>Orvane et Quillon sont des marques déposées d&apos;Orvane.</translation>
    </message>
    <message>
        <source>Orvane</source>
        <comment>Plugin CopyRight</comment>
        <translation>Orvane</translation>
    </message>
    <message>
        <source>Version 1.1.0</source>
        <comment>Plugin Version</comment>
        <translation>Version 1.1.0</translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Kavendi Request has failed
</source>
        <translation>La requête Kavendi a échoué
</translation>
    </message>
</context>
<context>
    <name>StudioPluginLoader</name>
    <message>
        <source>%1: %2</source>
        <comment>plug-in file, reason it is refused</comment>
        <translation>%1 : %2</translation>
    </message>
    <message>
        <source>no such file</source>
        <translation>fichier introuvable</translation>
    </message>
    <message>
        <source>not a loadable library (%1)</source>
        <translation>bibliothèque impossible à charger (%1)</translation>
    </message>
    <message>
        <source>not a viewer plug-in (no %1 entry point)</source>
        <translation>ce n&apos;est pas un module de visualisation (pas de point d&apos;entrée %1)</translation>
    </message>
    <message>
        <source>built with another toolkit (%1)</source>
        <translation>compilé avec une autre version de la boîte à outils (%1)</translation>
    </message>
    <message>
        <source>no record</source>
        <translation>aucune fiche</translation>
    </message>
    <message>
        <source>the component offers no plug-in interface</source>
        <translation>le composant n&apos;offre aucune interface de module</translation>
    </message>
    <message>
        <source>the plug-in is not a viewer plug-in</source>
        <translation>le module n&apos;est pas un module de visualisation</translation>
    </message>
</context>
<context>
    <name>StudioWindow</name>
    <message>
        <source>Studio</source>
        <translation>Studio</translation>
    </message>
    <message>
        <source>Outline</source>
        <translation>Structure</translation>
    </message>
    <message>
        <source>No viewer</source>
        <translation>Aucun visualiseur</translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation>&amp;Fichier</translation>
    </message>
    <message>
        <source>Open &amp;Kavendi Viewer</source>
        <translation>Ouvrir le visualiseur &amp;Kavendi</translation>
    </message>
    <message>
        <source>Ctrl+K</source>
        <translation>Ctrl+K</translation>
    </message>
    <message>
        <source>&amp;Print...</source>
        <translation>&amp;Imprimer...</translation>
    </message>
    <message>
        <source>E&amp;xit</source>
        <translation>&amp;Quitter</translation>
    </message>
    <message>
        <source>&amp;Edit</source>
        <translation>É&amp;dition</translation>
    </message>
    <message>
        <source>&amp;Copy</source>
        <translation>&amp;Copier</translation>
    </message>
    <message>
        <source>&amp;Reload</source>
        <translation>&amp;Recharger</translation>
    </message>
    <message>
        <source>R&amp;eset</source>
        <translation>Réi&amp;nitialiser</translation>
    </message>
    <message>
        <source>E&amp;xport</source>
        <translation>E&amp;xporter</translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation>&amp;Affichage</translation>
    </message>
    <message>
        <source>Zoom &amp;In</source>
        <translation>Zoom a&amp;vant</translation>
    </message>
    <message>
        <source>Zoom &amp;Out</source>
        <translation>Zoom a&amp;rrière</translation>
    </message>
    <message>
        <source>&amp;Window</source>
        <translation>Fe&amp;nêtre</translation>
    </message>
    <message>
        <source>&amp;Tile</source>
        <translation>&amp;Mosaïque</translation>
    </message>
    <message>
        <source>&amp;Cascade</source>
        <translation>&amp;Cascade</translation>
    </message>
    <message>
        <source>Ready</source>
        <translation>Prêt</translation>
    </message>
    <message>
        <source>Plug-in refused: %1</source>
        <translation>Module refusé : %1</translation>
    </message>
    <message>
        <source>Loaded %1 %2</source>
        <translation>%1 %2 chargé</translation>
    </message>
</context>
<context>
    <name>kavendi-studio</name>
    <message>
        <source>A small host for viewer plug-ins.</source>
        <translation>Un petit hôte pour modules de visualisation.</translation>
    </message>
    <message>
        <source>Viewer plug-in library to load.</source>
        <translation>Bibliothèque du module de visualisation à charger.</translation>
    </message>
    <message>
        <source>PATH</source>
        <comment>value of an option</comment>
        <translation>CHEMIN</translation>
    </message>
    <message>
        <source>Open a project directory.</source>
        <translation>Ouvre un dossier de projet.</translation>
    </message>
    <message>
        <source>DIR</source>
        <comment>value of an option</comment>
        <translation>DOSSIER</translation>
    </message>
    <message>
        <source>Host data directory.</source>
        <translation>Dossier des données de l&apos;hôte.</translation>
    </message>
    <message>
        <source>Open a viewer at start.</source>
        <translation>Ouvre un visualiseur au démarrage.</translation>
    </message>
    <message>
        <source>Save the main window after start-up and exit.</source>
        <translation>Enregistre la fenêtre principale après le démarrage, puis quitte.</translation>
    </message>
    <message>
        <source>FILE</source>
        <comment>value of an option</comment>
        <translation>FICHIER</translation>
    </message>
    <message>
        <source>screenshot %1</source>
        <translation>capture d&apos;écran %1</translation>
    </message>
    <message>
        <source>cannot write %1</source>
        <translation>impossible d&apos;écrire %1</translation>
    </message>
</context>
<context>
    <name>kvd</name>
    <message>
        <source>%1 is a directory, not a regular file</source>
        <translation>%1 est un dossier, pas un fichier ordinaire</translation>
    </message>
    <message>
        <source>%1 is a pipe, not a regular file</source>
        <translation>%1 est un tube, pas un fichier ordinaire</translation>
    </message>
    <message>
        <source>%1 is a socket, not a regular file</source>
        <translation>%1 est une socket, pas un fichier ordinaire</translation>
    </message>
    <message>
        <source>%1 is a device, not a regular file</source>
        <translation>%1 est un périphérique, pas un fichier ordinaire</translation>
    </message>
    <message>
        <source>write a demo repository of made-up measures</source>
        <translation>écrit un dépôt de démonstration de mesures inventées</translation>
    </message>
    <message>
        <source>append a record to a measure, as recording tools do</source>
        <translation>ajoute un enregistrement à une mesure, comme le font les outils d&apos;enregistrement</translation>
    </message>
    <message>
        <source>print the record key of a text</source>
        <translation>affiche la clé d&apos;enregistrement d&apos;un texte</translation>
    </message>
    <message>
        <source>list the records of a measure data or index file</source>
        <translation>liste les enregistrements d&apos;un fichier de données ou d&apos;index de mesure</translation>
    </message>
    <message>
        <source>draw the chart of a repository into a PNG, SVG or PDF file</source>
        <translation>dessine le graphique d&apos;un dépôt dans un fichier PNG, SVG ou PDF</translation>
    </message>
    <message>
        <source>write the curves of a repository&apos;s chart as CSV</source>
        <translation>écrit en CSV les courbes du graphique d&apos;un dépôt</translation>
    </message>
    <message>
        <source>the demo curve %1 of %2 has no records</source>
        <translation>la courbe de démonstration %1 de %2 n&apos;a aucun enregistrement</translation>
    </message>
    <message>
        <source>%1 cannot be loaded</source>
        <translation>%1 ne peut pas être chargé</translation>
    </message>
    <message>
        <source>Usage: kvd dump [--fields N] FILE

Lists a measure data file (.kvd), one line a record:
  INDEX OFFSET DATE KEY VALUE/TOTAL...
with the byte offset of the record, its date in ISO 8601 (UTC), its key in hexadecimal
and the value and running total of each field. The number of fields comes from the
file name (MEASURE.USER.N.kvd) unless --fields gives it. An index file (.idx) is
listed as INDEX KEY OFFSET, one line an entry. A FILE that is not a regular file (a
pipe, a device, a directory) is refused unread.

  --fields N   the number of fields, 0 to 9999
</source>
        <translation>Utilisation : kvd dump [--fields N] FICHIER

Liste un fichier de données de mesure (.kvd), une ligne par enregistrement :
  INDEX DÉCALAGE DATE CLÉ VALEUR/TOTAL...
avec le décalage en octets de l&apos;enregistrement, sa date en ISO 8601 (UTC), sa clé en
hexadécimal, puis la valeur et le total cumulé de chaque champ. Le nombre de champs
vient du nom du fichier (MESURE.UTILISATEUR.N.kvd), sauf si --fields le donne. Un
fichier d&apos;index (.idx) est listé en INDEX CLÉ DÉCALAGE, une ligne par entrée. Un
FICHIER qui n&apos;est pas un fichier ordinaire (un tube, un périphérique, un dossier) est
refusé sans être lu.

  --fields N   le nombre de champs, de 0 à 9999
</translation>
    </message>
    <message>
        <source>Can&apos;t open file: %1</source>
        <translation>Impossible d&apos;ouvrir le fichier : %1</translation>
    </message>
    <message>
        <source>Can&apos;t read file: %1</source>
        <translation>Impossible de lire le fichier : %1</translation>
    </message>
    <message>
        <source>a partial entry at the end was ignored</source>
        <translation>une entrée incomplète à la fin a été ignorée</translation>
    </message>
    <message>
        <source>expects one FILE, got %1</source>
        <translation>attend un FICHIER, en a reçu %1</translation>
    </message>
    <message>
        <source>--fields takes 0 to 9999, not %1</source>
        <translation>--fields prend de 0 à 9999, et non %1</translation>
    </message>
    <message>
        <source>the number of fields is not in the name %1; give it with --fields</source>
        <translation>le nombre de champs n&apos;est pas dans le nom %1 ; donnez-le avec --fields</translation>
    </message>
    <message>
        <source>%1 bytes of a partial record at the end were ignored</source>
        <translation>%1 octets d&apos;un enregistrement incomplet à la fin ont été ignorés</translation>
    </message>
    <message>
        <source>Usage: kvd export --root R [--view] [--curve KEY:USER:FIELD]... [--from T] [--to T]
                  [--builtin FILE] -o OUT.csv

Writes the curves the viewer would show as the viewer&apos;s CSV export: one row an instant,
a date formula, then one column a curve. Nothing in the repository is written.

Exit status: 0 when OUT.csv was written; 1 when no file was written, because no curve
was selected (the viewer exports nothing from an empty chart either; kvd says so),
something named cannot be shown or OUT.csv cannot be written; 2 for bad arguments.

</source>
        <translation>Utilisation : kvd export --root R [--view] [--curve CLÉ:UTILISATEUR:CHAMP]...
                         [--from T] [--to T] [--builtin FICHIER] -o SORTIE.csv

Écrit les courbes que montrerait le visualiseur, comme le fait son export CSV : une
ligne par instant, une formule de date, puis une colonne par courbe. Rien n&apos;est écrit
dans le dépôt.

Code de sortie : 0 quand SORTIE.csv a été écrit ; 1 quand aucun fichier n&apos;a été écrit,
parce qu&apos;aucune courbe n&apos;était choisie (le visualiseur n&apos;exporte rien d&apos;un graphique
vide non plus ; kvd le signale), que quelque chose de nommé ne peut pas être affiché ou
que SORTIE.csv ne peut pas être écrit ; 2 pour des arguments incorrects.

</translation>
    </message>
    <message>
        <source>  -o OUT.csv             the file to write
</source>
        <translation>  -o SORTIE.csv          le fichier à écrire
</translation>
    </message>
    <message>
        <source>unexpected argument %1</source>
        <translation>argument inattendu %1</translation>
    </message>
    <message>
        <source>-o OUT.csv is required</source>
        <translation>-o SORTIE.csv est obligatoire</translation>
    </message>
    <message>
        <source>no curve to export; nothing written</source>
        <translation>aucune courbe à exporter ; rien n&apos;a été écrit</translation>
    </message>
    <message>
        <source>%1: %2</source>
        <translation>%1 : %2</translation>
    </message>
    <message>
        <source>%1: no such file</source>
        <translation>%1 : fichier introuvable</translation>
    </message>
    <message>
        <source>%1: cannot be read</source>
        <translation>%1 : illisible</translation>
    </message>
    <message>
        <source>Usage: kvd key TEXT

Prints the record key File_Key derives from TEXT (a test file name, say),
as 0x%08x. TEXT is taken as the bytes of its local 8-bit encoding.
</source>
        <translation>Utilisation : kvd key TEXTE

Affiche la clé d&apos;enregistrement que File_Key tire de TEXTE (un nom de fichier de test,
par exemple), sous la forme 0x%08x. TEXTE est pris comme les octets de son codage local
sur 8 bits.
</translation>
    </message>
    <message>
        <source>expects one TEXT, got %1</source>
        <translation>attend un TEXTE, en a reçu %1</translation>
    </message>
    <message>
        <source>Usage: kvd render --root R [--view] [--curve KEY:USER:FIELD]... [--from T] [--to T]
                  [--size WxH] [--builtin FILE] -o OUT

Draws the chart the viewer would show into OUT: a PNG, SVG or PDF file, by its
extension. Nothing in the repository is written.

</source>
        <translation>Utilisation : kvd render --root R [--view] [--curve CLÉ:UTILISATEUR:CHAMP]...
                         [--from T] [--to T] [--size LxH] [--builtin FICHIER] -o SORTIE

Dessine dans SORTIE le graphique que montrerait le visualiseur : un fichier PNG, SVG ou
PDF, selon son extension. Rien n&apos;est écrit dans le dépôt.

</translation>
    </message>
    <message>
        <source>  --size WxH             the picture size in pixels (default 1280x800, at least
                         400x200); SVG and PDF count 96 pixels an inch as PNG does,
                         so text takes the same share of every picture (a PDF page
                         of W x H pixels measures 3/4 W x 3/4 H points)
  -o OUT                 the file to write (.png, .svg or .pdf)

The chart draws no curve point at or right of x = 4000, where the window system&apos;s
coordinates stop being safe. The plot ends 250 pixels short of the right edge, so from
a width of 4250 on it reaches that limit and curves stop short of its right end (kvd
says so on standard error).
</source>
        <translation>  --size LxH             la taille de l&apos;image en pixels (1280x800 par défaut, au moins
                         400x200) ; SVG et PDF comptent 96 pixels par pouce comme PNG,
                         si bien que le texte occupe la même part de chaque image (une
                         page PDF de L x H pixels mesure 3/4 L x 3/4 H points)
  -o SORTIE              le fichier à écrire (.png, .svg ou .pdf)

Le graphique ne dessine aucun point de courbe à x = 4000 ou à sa droite, là où les
coordonnées du système de fenêtrage cessent d&apos;être sûres. Le tracé s&apos;arrête 250 pixels
avant le bord droit : à partir d&apos;une largeur de 4250, il atteint cette limite et les
courbes s&apos;arrêtent avant son extrémité droite (kvd le signale sur la sortie d&apos;erreur).
</translation>
    </message>
    <message>
        <source>--size takes WxH, 400x200 to %1x%1, not %2</source>
        <translation>--size prend LxH, de 400x200 à %1x%1, et non %2</translation>
    </message>
    <message>
        <source>-o OUT is required</source>
        <translation>-o SORTIE est obligatoire</translation>
    </message>
    <message>
        <source>%1: the name must end in .png, .svg or .pdf</source>
        <translation>%1 : le nom doit finir par .png, .svg ou .pdf</translation>
    </message>
    <message>
        <source>no curve to show; the chart is empty</source>
        <translation>aucune courbe à afficher ; le graphique est vide</translation>
    </message>
    <message>
        <source>at a width of %1 the plot reaches x = %2, the chart&apos;s drawing limit; curves stop there, short of the plot&apos;s right edge</source>
        <translation>à une largeur de %1, le tracé atteint x = %2, la limite de dessin du graphique ; les courbes s&apos;y arrêtent, avant le bord droit du tracé</translation>
    </message>
    <message>
        <source>%1: the chart could not be drawn</source>
        <translation>%1 : le graphique n&apos;a pas pu être dessiné</translation>
    </message>
    <message>
        <source>Usage: kvd sample ROOT [--users N] [--days D] [--per-day R] [--seed S] [--end DATE]
                       [--view]

Writes a demo repository into ROOT (created if missing): for each user a 4-field and an
8-field cov measure (covered counts; covered counts then totals) and a 2-field tests
measure (passed, failed), R records a day over the D days ending on DATE, with the
running totals and indexes the store keeps. Existing pairs of those names are
replaced. The same options give the same bytes.

  --users N     users, 1 to 1000 (default 3: alice, bob, carol)
  --days D      days with records, 1 to 36500 (default 90)
  --per-day R   records a day in each file, 1 to 10000 (default 4)
  --seed S      32-bit seed of the made-up figures (default 1)
  --end DATE    last day, YYYY-MM-DD (default today, UTC)
  --view        also a saved view (KVD.cfg) to open on: curves of the first two users
                on both value scales, three events, the last three months, and the
                line coverage ratio of a 2-field lines measure written for it
</source>
        <translation>Utilisation : kvd sample RACINE [--users N] [--days J] [--per-day E] [--seed G]
                                [--end DATE] [--view]

Écrit un dépôt de démonstration dans RACINE (créé s&apos;il manque) : pour chaque
utilisateur, une mesure cov à 4 champs et une à 8 champs (nombres couverts ; nombres
couverts puis totaux) et une mesure tests à 2 champs (réussis, échoués), E
enregistrements par jour sur les J jours qui finissent à DATE, avec les totaux cumulés
et les index que tient le stockage. Les paires existantes de ces noms sont remplacées.
Les mêmes options donnent les mêmes octets.

  --users N     utilisateurs, de 1 à 1000 (3 par défaut : alice, bob, carol)
  --days J      jours avec des enregistrements, de 1 à 36500 (90 par défaut)
  --per-day E   enregistrements par jour dans chaque fichier, de 1 à 10000 (4 par
                défaut)
  --seed G      graine sur 32 bits des chiffres inventés (1 par défaut)
  --end DATE    dernier jour, AAAA-MM-JJ (aujourd&apos;hui en UTC par défaut)
  --view        en plus, une vue enregistrée (KVD.cfg) sur laquelle ouvrir : des
                courbes des deux premiers utilisateurs sur les deux échelles de
                valeurs, trois événements, les trois derniers mois, et le taux de
                couverture des lignes d&apos;une mesure lines à 2 champs écrite pour elle
</translation>
    </message>
    <message>
        <source>expects one ROOT, got %1</source>
        <translation>attend une RACINE, en a reçu %1</translation>
    </message>
    <message>
        <source>--%1 takes 1 to %2, not %3</source>
        <translation>--%1 prend de 1 à %2, et non %3</translation>
    </message>
    <message>
        <source>--seed takes a 32-bit number, not %1</source>
        <translation>--seed prend un nombre sur 32 bits, et non %1</translation>
    </message>
    <message>
        <source>--end takes a date YYYY-MM-DD, not %1</source>
        <translation>--end prend une date AAAA-MM-JJ, et non %1</translation>
    </message>
    <message>
        <source>%1 records in %2 measure files under %3</source>
        <translation>%1 enregistrements dans %2 fichiers de mesure sous %3</translation>
    </message>
    <message>
        <source>none</source>
        <translation>néant</translation>
    </message>
    <message>
        <source>  --root R               the repository directory (required)
  --view                 the view saved in R/KVD.cfg (the default without --curve)
  --curve KEY:USER:FIELD adds field FIELD (from 1) of measure KEY (cov4) of USER,
                         as the viewer&apos;s field menu does; may be repeated
  --from T, --to T       the shown range, YYYY-MM-DD or YYYY-MM-DDTHH:MM:SS, local
                         time; a bound left out stays where the chart has it (the
                         last 30 days on a chart without curves)
  --builtin FILE         measure definitions to use instead of the installed ones
</source>
        <translation>  --root R               le dossier du dépôt (obligatoire)
  --view                 la vue enregistrée dans R/KVD.cfg (par défaut sans --curve)
  --curve CLÉ:UTILISATEUR:CHAMP
                         ajoute le champ CHAMP (à partir de 1) de la mesure CLÉ (cov4)
                         de UTILISATEUR, comme le menu des champs du visualiseur ;
                         peut être répété
  --from T, --to T       la période affichée, AAAA-MM-JJ ou AAAA-MM-JJTHH:MM:SS, en
                         heure locale ; une borne omise reste là où le graphique la
                         place (les 30 derniers jours sur un graphique sans courbes)
  --builtin FICHIER      les définitions de mesures à utiliser au lieu de celles
                         installées
</translation>
    </message>
    <message>
        <source>--root R is required</source>
        <translation>--root R est obligatoire</translation>
    </message>
    <message>
        <source>%1: not a directory</source>
        <translation>%1 : n&apos;est pas un dossier</translation>
    </message>
    <message>
        <source>%1: no such directory</source>
        <translation>%1 : dossier introuvable</translation>
    </message>
    <message>
        <source>--curve takes KEY:USER:FIELD, such as cov4:alice:1, not %1</source>
        <translation>--curve prend CLÉ:UTILISATEUR:CHAMP, par exemple cov4:alice:1, et non %1</translation>
    </message>
    <message>
        <source>--%1 takes YYYY-MM-DD or YYYY-MM-DDTHH:MM:SS, not %2</source>
        <translation>--%1 prend AAAA-MM-JJ ou AAAA-MM-JJTHH:MM:SS, et non %2</translation>
    </message>
    <message>
        <source>--to must lie after --from</source>
        <translation>--to doit être postérieur à --from</translation>
    </message>
    <message>
        <source>%1 cannot be shown</source>
        <translation>%1 ne peut pas être affiché</translation>
    </message>
    <message>
        <source>the range from %1 to %2 is empty</source>
        <translation>la période du %1 au %2 est vide</translation>
    </message>
    <message>
        <source>%1: no measure %2 (measures: %3)</source>
        <translation>%1 : aucune mesure %2 (mesures : %3)</translation>
    </message>
    <message>
        <source>%1: no user %2 (users: %3)</source>
        <translation>%1 : aucun utilisateur %2 (utilisateurs : %3)</translation>
    </message>
    <message>
        <source>%1: user %2 has no measure %3 (measures: %4)</source>
        <translation>%1 : l&apos;utilisateur %2 n&apos;a pas de mesure %3 (mesures : %4)</translation>
    </message>
    <message>
        <source>%1: %2 has fields 1 to %3</source>
        <translation>%1 : %2 a les champs 1 à %3</translation>
    </message>
    <message>
        <source>%1: field %2 of %3 is shown already (for %4)</source>
        <translation>%1 : le champ %2 de %3 est déjà affiché (pour %4)</translation>
    </message>
    <message>
        <source>%1: no records to show</source>
        <translation>%1 : aucun enregistrement à afficher</translation>
    </message>
    <message>
        <source>Usage: kvd write MEASURE USER KEY DATE VALUE...

Appends one record to the measure MEASURE of USER in the repository named by
ZANTH_KVD_ROOT, exactly as a recording tool calling Write_Measure does; the exit
status is its result (0 written, 1 not written, 2 bad arguments).

  KEY    record key, a 32-bit number in decimal or 0x hexadecimal (see kvd key)
  DATE   0 for now, or one of
           SECONDS                    since 1970-01-01 UTC, decimal or 0x hexadecimal
           YYYY-MM-DD                 midnight UTC
           YYYY-MM-DDTHH:MM:SS        UTC, also with a trailing Z
           YYYY-MM-DDTHH:MM:SS+HH:MM  local time HH:MM ahead of UTC (-HH:MM: behind);
                                      the record holds that instant in UTC
         from 1970-01-01T00:00:01Z to 2106-02-07T06:28:15Z, the 32-bit seconds
  VALUE  one unsigned 32-bit number per field; their count names the file pair

The pair is ZANTH_KVD_ROOT/MEASURE.USER.N.kvd (and .idx), N the number of values.
A writer waits for as long as the pair&apos;s .lck file exists.

Only the first write of a pair succeeds on this build: it creates the pair. Every
later write to the same MEASURE, USER and N fails, changes neither file and exits
with 1 after the store&apos;s message &quot;Unable to read DataBase file&quot;. The store does so
by design; it is no passing fault, and trying again gives the same.
</source>
        <translation>Utilisation : kvd write MESURE UTILISATEUR CLÉ DATE VALEUR...

Ajoute un enregistrement à la mesure MESURE de UTILISATEUR dans le dépôt désigné par
ZANTH_KVD_ROOT, exactement comme un outil d&apos;enregistrement qui appelle Write_Measure ;
le code de sortie est son résultat (0 écrit, 1 non écrit, 2 arguments incorrects).

  CLÉ     clé de l&apos;enregistrement, un nombre sur 32 bits en décimal ou en hexadécimal
          0x (voir kvd key)
  DATE    0 pour maintenant, ou l&apos;une des formes
            SECONDES                   depuis le 1970-01-01 UTC, en décimal ou en
                                       hexadécimal 0x
            AAAA-MM-JJ                 minuit UTC
            AAAA-MM-JJTHH:MM:SS        UTC, aussi avec un Z final
            AAAA-MM-JJTHH:MM:SS+HH:MM  heure locale en avance de HH:MM sur UTC
                                       (-HH:MM : en retard) ; l&apos;enregistrement garde
                                       cet instant en UTC
          du 1970-01-01T00:00:01Z au 2106-02-07T06:28:15Z, les secondes sur 32 bits
  VALEUR  un nombre non signé sur 32 bits par champ ; leur nombre désigne la paire de
          fichiers

La paire est ZANTH_KVD_ROOT/MESURE.UTILISATEUR.N.kvd (et .idx), N le nombre de
valeurs. Un écrivain attend tant que le fichier .lck de la paire existe.

Seule la première écriture d&apos;une paire réussit sur cette version : elle crée la paire.
Toute écriture ultérieure dans les mêmes MESURE, UTILISATEUR et N échoue, ne modifie
aucun des deux fichiers et se termine avec 1 après le message du stockage « Impossible
de lire le fichier de données ». Le stockage agit ainsi à dessein : ce n&apos;est pas une
panne passagère, et réessayer donne le même résultat.
</translation>
    </message>
    <message>
        <source>0 for now, SECONDS, YYYY-MM-DD, YYYY-MM-DDTHH:MM:SS, or the latter with Z, +HH:MM or -HH:MM</source>
        <translation>0 pour maintenant, SECONDES, AAAA-MM-JJ, AAAA-MM-JJTHH:MM:SS, ou cette dernière forme avec Z, +HH:MM ou -HH:MM</translation>
    </message>
    <message>
        <source>expects MEASURE USER KEY DATE VALUE...</source>
        <translation>attend MESURE UTILISATEUR CLÉ DATE VALEUR...</translation>
    </message>
    <message>
        <source>a measure or user name cannot hold &quot;/&quot;</source>
        <translation>un nom de mesure ou d&apos;utilisateur ne peut pas contenir « / »</translation>
    </message>
    <message>
        <source>KEY is not a 32-bit number: %1</source>
        <translation>CLÉ n&apos;est pas un nombre sur 32 bits : %1</translation>
    </message>
    <message>
        <source>DATE is neither seconds nor a date from 1970-01-01T00:00:01Z to 2106-02-07T06:28:15Z: %1 (give %2)</source>
        <translation>DATE n&apos;est ni des secondes ni une date du 1970-01-01T00:00:01Z au 2106-02-07T06:28:15Z : %1 (donnez %2)</translation>
    </message>
    <message>
        <source>DATE is neither seconds nor a date: %1 (give %2)</source>
        <translation>DATE n&apos;est ni des secondes ni une date : %1 (donnez %2)</translation>
    </message>
    <message>
        <source>VALUE is not a 32-bit number: %1</source>
        <translation>VALEUR n&apos;est pas un nombre sur 32 bits : %1</translation>
    </message>
    <message>
        <source>ZANTH_KVD_ROOT is not set</source>
        <translation>ZANTH_KVD_ROOT n&apos;est pas défini</translation>
    </message>
    <message>
        <source>ZANTH_KVD_ROOT is not a writable directory: %1</source>
        <translation>ZANTH_KVD_ROOT n&apos;est pas un dossier accessible en écriture : %1</translation>
    </message>
    <message>
        <source>warning: a &quot;.&quot; in the measure or user name makes readers split the file name wrongly</source>
        <translation>avertissement : un « . » dans le nom de mesure ou d&apos;utilisateur fait mal découper le nom de fichier par les lecteurs</translation>
    </message>
    <message>
        <source>waiting for %1 to disappear</source>
        <translation>attente de la disparition de %1</translation>
    </message>
    <message>
        <source>Usage: kvd COMMAND [ARGS...]

Reads, writes and draws Kavendi measure repositories without a window.

Commands:
</source>
        <translation>Utilisation : kvd COMMANDE [ARGUMENTS...]

Lit, écrit et dessine des dépôts de mesures Kavendi sans fenêtre.

Commandes :
</translation>
    </message>
    <message>
        <source>
kvd COMMAND --help describes a command.
</source>
        <translation>
kvd COMMANDE --help décrit une commande.
</translation>
    </message>
    <message>
        <source>kvd: unknown command &apos;%1&apos;</source>
        <translation>kvd : commande inconnue « %1 »</translation>
    </message>
    <message>
        <source>kvd %1: %2</source>
        <comment>subcommand, message</comment>
        <translation>kvd %1 : %2</translation>
    </message>
    <message>
        <source>the pair&apos;s file names would be %1 bytes long; the file system takes at most %2</source>
        <translation>les noms de fichier de la paire feraient %1 octets ; le système de fichiers en accepte au plus %2</translation>
    </message>
    <message>
        <source>no file can be created in %1: %2</source>
        <translation>aucun fichier ne peut être créé dans %1 : %2</translation>
    </message>
</context>
</TS>
