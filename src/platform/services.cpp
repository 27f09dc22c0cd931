#include "platform/services.h"

namespace dpm {

Services& Platform() {
  static Services services;
  return services;
}

}  // namespace dpm
