// What the framework finds in this module: one function, which names the producer.
#include "Bridges/MLT/ModulePlace.h"
#include "Bridges/MLT/Producer.h"

#include <exception>
#include <framework/mlt.h>

namespace {

constexpr const char* kName = "barsandtone";

mlt_properties Metadata(mlt_service_type, const char*, void*) noexcept {
    try {
        return mlt_properties_parse_yaml(bridge::MetadataFile().c_str());
    } catch (const std::exception& error) {
        mlt_log_error(nullptr, "%s: %s\n", kName, error.what());
        return nullptr;
    }
}

void* Create(mlt_profile profile, mlt_service_type, const char*, const void* argument) noexcept {
    return bridge::NewProducer(profile, static_cast<const char*>(argument));
}

}  // namespace

extern "C" __attribute__((visibility("default"))) void mlt_register(mlt_repository repository) {
    mlt_repository_register(repository, mlt_service_producer_type, kName, Create);
    mlt_repository_register_metadata(repository, mlt_service_producer_type, kName, Metadata, nullptr);
}
