// A program that moves all layers of a data set by 100 m to the east and 50 m to the north.
#include <cstdio>

#include "kv_tr/gdal/vector_transform.h"

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: host_gdal SOURCE TARGET\n");
        return 2;
    }
    const kv_tr::Transformation shift{
        .type = kv_tr::Type::kHelmert, .a = {100, 1, 0}, .b = {50, 0, 1}};
    try {
        const auto result =
            kv_tr::gdal::TransformLayers({.source = argv[1], .target = argv[2]}, {.map = shift});
        for (const auto& remark : result.remarks) std::printf("note: %s\n", remark.what());
        std::printf("%zu layers, %zu features\n", result.layers, result.features);
    } catch (const kv_tr::gdal::DataSetError& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
