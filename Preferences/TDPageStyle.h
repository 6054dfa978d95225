#pragma once

#include "UIKit/UITableViewCell.h"
#include "libtandem/TDAccentColor.h"

/// White while the system is dark, else the accent colour.
UIColor accentOrWhite();

/// Colours the title and the value of a cell: the colour above where the cell can be worked, else light grey at half
/// alpha.
void colorTexts(UITableViewCell& cell);

/// Has the cell's icon drawn as a template in that colour.
void tintIcon(UITableViewCell& cell, const UIColor& color);
