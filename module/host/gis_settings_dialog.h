// GIS Settings: the choice of the current template and output databases.
#pragma once

// Shows the dialog and writes what was chosen to gps.ini. Function code 7; other tools run it when they find
// no current database.
void RunGisSettings();
