#pragma once

#include <QString>

class MainWindow;

/// Plays a short tour through what a window can show, and leaves a picture of each step in `directory`. False, with a
/// message on standard error, if a picture cannot be written.
bool playTour(MainWindow& window, const QString& directory);
