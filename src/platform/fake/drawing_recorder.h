#pragma once

#include <memory>
#include <vector>

#include "platform/forms/picture.h"

namespace dpm::fake {

// Everything drawn on a picture from now on, since its latest Cls, also what a view has
// taken into its image. The record outlives the picture.
inline std::shared_ptr<const std::vector<DrawOp>> RecordDrawing(PictureBox& picture) {
  auto drawn = std::make_shared<std::vector<DrawOp>>();
  picture.SetDrawObserver([drawn](const DrawOp* op) {
    if (op != nullptr) {
      drawn->push_back(*op);
    } else {
      drawn->clear();
    }
  });
  return drawn;
}

}  // namespace dpm::fake
