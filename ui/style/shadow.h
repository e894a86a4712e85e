#pragma once

class QWidget;

/// Gives \a widget the soft grey shadow of the window's surfaces: no offset, "#DCDCDC", blur radius
/// 8 px. The effect belongs to the widget.
void addSurfaceShadow(QWidget *widget);
