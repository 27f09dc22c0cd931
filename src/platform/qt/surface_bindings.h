#pragma once

#include <memory>

#include <QWidget>

#include "platform/qt/control_binding.h"

namespace dpm::qt {

// Grids on a QTableWidget; pictures on a QLabel that paints itself from an image of the
// drawing that the binding keeps.
std::unique_ptr<ControlBinding> MakeGridBinding(Control& grid, QWidget* widget);
std::unique_ptr<ControlBinding> MakePictureBinding(Control& picture, QWidget* widget);

}  // namespace dpm::qt
