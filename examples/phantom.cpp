#include "examples/phantom.h"

#include "image/old_layout.h"
#include "prefs/numbers.h"

#include <algorithm>
#include <array>
#include <cmath>

// Only additions, multiplications, divisions and square roots: their results are the same
// everywhere, unlike those of sine or power.

namespace phantom
{

namespace
{

constexpr float FieldWidth = 217.6F;
constexpr float FieldLength = 144.0F;
constexpr float BedStep = 126.0F;

// A place in the head in mm: x from the subject's right to the left, y from anterior to posterior,
// both from the middle; z from the vertex down.
struct Place {
    float x, y, z;
};

struct Ellipsoid {
    Place centre;
    Place radius;
};

constexpr Ellipsoid Head{{0, 0, 97}, {76, 96, 97}};
constexpr Ellipsoid Neck{{0, 12, 200}, {56, 64, 120}};
constexpr Ellipsoid Skull{{0, 0, 84}, {71, 90, 79}};
constexpr Ellipsoid Brain{{0, -1, 76}, {66, 84, 66}};
constexpr Ellipsoid Vertebrae{{0, 22, 190}, {13, 13, 70}};
constexpr Ellipsoid Airway{{0, -8, 190}, {9, 8, 60}};
constexpr Ellipsoid Cerebellum{{0, 46, 124}, {46, 30, 20}};
constexpr Ellipsoid BrainStem{{0, 16, 126}, {11, 11, 34}};
constexpr Ellipsoid Callosum{{0, 4, 80}, {30, 44, 26}};
constexpr Ellipsoid HotLesion{{-34, -40, 66}, {10, 10, 10}};
constexpr Ellipsoid ColdLesion{{42, 34, 58}, {15, 17, 15}};
// On one side; the other is its mirror image.
constexpr Ellipsoid FrontHorn{{8, -14, 72}, {5, 20, 11}};
constexpr Ellipsoid BackHorn{{16, 26, 72}, {6, 16, 10}};
constexpr Ellipsoid Caudate{{14, -18, 72}, {6, 12, 10}};
constexpr Ellipsoid Putamen{{26, -6, 82}, {6, 17, 11}};
constexpr Ellipsoid Thalamus{{10, 12, 82}, {8, 13, 9}};

// Activity of the tissues in kBq/ml.
struct Tissues {
    float skin, bone, fluid, gray, white, nuclei, cerebellum, hot, cold;
};

// Uptake during a frame: what is in the blood at first gathers in the gray matter and, most of all,
// in the hot lesion.
Tissues tissues_at(float time)
{
    const float gathered = time * 1.6F / (time + 0.6F);
    const float washed = 1.0F / (1.0F + 2.0F * time);
    return {.skin = 3.0F + 4.0F * washed,
            .bone = 1.5F + washed,
            .fluid = 1.0F + 2.0F * washed,
            .gray = 24.0F * gathered + 6.0F * washed,
            .white = 8.0F * gathered + 3.0F * washed,
            .nuclei = 27.0F * gathered + 7.0F * washed,
            .cerebellum = 21.0F * gathered + 8.0F * washed,
            .hot = 33.0F * time + 4.0F * washed,
            .cold = 3.0F};
}

float smooth(float t)
{
    const float held = std::clamp(t, 0.0F, 1.0F);
    return held * held * (3.0F - 2.0F * held);
}

// Distance from the ellipsoid's surface in mm, about; positive inside.
float depth(const Ellipsoid &body, const Place &place)
{
    const float x = (place.x - body.centre.x) / body.radius.x;
    const float y = (place.y - body.centre.y) / body.radius.y;
    const float z = (place.z - body.centre.z) / body.radius.z;
    const float shortest = std::min({body.radius.x, body.radius.y, body.radius.z});
    return (1.0F - std::sqrt(x * x + y * y + z * z)) * shortest;
}

// How much of a place lies at a positive depth: edges are 7 mm soft, as a scanner sees them.
float share(float depth_mm)
{
    return smooth(depth_mm / 7.0F + 0.5F);
}

float mix(float outside, float inside, float inside_share)
{
    return outside + (inside - outside) * inside_share;
}

// A number from 0 to 1 for each point of a lattice, without any pattern.
float lattice(std::uint32_t x, std::uint32_t y, std::uint32_t z)
{
    std::uint32_t hash = x * 0x9E3779B1U ^ y * 0x85EBCA77U ^ z * 0xC2B2AE3DU;
    hash = (hash ^ (hash >> 15)) * 0x2C1B3C6DU;
    hash = (hash ^ (hash >> 12)) * 0x297A2D39U;
    hash ^= hash >> 15;
    return static_cast<float>(hash >> 8) / 16777215.0F;
}

// Smooth noise from 0 to 1 between lattice points `spacing` mm apart. The lattice stands askew to
// the axes, so that it doesn't show.
float noise(const Place &place, float spacing)
{
    const float turned = 0.8F * place.x + 0.6F * place.y;
    const std::array at{(0.96F * turned + 0.28F * place.z) / spacing,
                        (0.8F * place.y - 0.6F * place.x) / spacing,
                        (0.96F * place.z - 0.28F * turned) / spacing};
    std::array<std::uint32_t, 3> cell{};
    std::array<float, 3> part{};
    for (std::size_t axis = 0; axis < 3; ++axis) {
        const float start = std::floor(at.at(axis));
        cell.at(axis) =
            static_cast<std::uint32_t>(velmorant::truncate_to_int32(static_cast<double>(start)));
        part.at(axis) = smooth(at.at(axis) - start);
    }
    const auto along_x = [&](std::uint32_t y, std::uint32_t z) {
        return mix(lattice(cell[0], cell[1] + y, cell[2] + z),
                   lattice(cell[0] + 1, cell[1] + y, cell[2] + z), part[0]);
    };
    return mix(mix(along_x(0, 0), along_x(1, 0), part[1]),
               mix(along_x(0, 1), along_x(1, 1), part[1]), part[2]);
}

float cerebrum(const Place &place, const Tissues &tissues)
{
    // The fissure between the hemispheres is a surface like the outer one, down to the callosum.
    const float outer = depth(Brain, place);
    const float middle = std::fabs(place.x) - 1.0F + std::max(depth(Callosum, place), 0.0F) * 4.0F;
    const float surface = std::min(outer, middle);
    // Folds carry the gray matter inwards, and a little fluid after it.
    const float fold = std::fabs(noise(place, 15.0F) - 0.5F) * 2.0F;
    const float sulcus = smooth(1.0F - fold / 0.5F);
    const float ribbon = 7.0F + 11.0F * sulcus;
    const float cortex = mix(tissues.white, tissues.gray, share(ribbon - surface));
    return mix(cortex, tissues.fluid, 0.35F * sulcus * share(6.0F - surface));
}

float activity(const Place &place, const Tissues &tissues)
{
    const Place side{std::fabs(place.x), place.y, place.z};
    float value = 0.0F;
    const auto add = [&](float tissue, float inside_share) {
        value = mix(value, tissue, inside_share);
    };
    add(tissues.skin, std::max(share(depth(Head, place)), share(depth(Neck, place))));
    add(tissues.bone, share(depth(Skull, place)));
    add(tissues.bone, share(depth(Vertebrae, place)));
    add(0.0F, share(depth(Airway, place)));
    add(tissues.fluid, share(depth(Brain, place) + 2.0F));
    add(cerebrum(place, tissues), share(depth(Brain, place)));
    add(tissues.nuclei, share(depth(Caudate, side)));
    add(tissues.nuclei, share(depth(Putamen, side)));
    add(tissues.nuclei, share(depth(Thalamus, side)));
    add(tissues.fluid, share(std::max(depth(FrontHorn, side), depth(BackHorn, side))));
    add(tissues.cerebellum, share(depth(Cerebellum, place)));
    add(tissues.white, share(depth(BrainStem, place)));
    add(tissues.hot, share(depth(HotLesion, place)));
    add(tissues.cold, share(depth(ColdLesion, place)));
    return value * (0.92F + 0.16F * noise(place, 3.5F));
}

} // namespace

velmorant::ImageHeader describe(std::int32_t x_dim, std::int32_t y_dim, std::int32_t num_slices,
                                std::int32_t frames, std::int32_t beds)
{
    velmorant::ImageHeader header{};
    velmorant::convert_header_old_to_new({frames, num_slices, 1, 0, beds - 1, x_dim, y_dim}, {},
                                         header);
    header.pixel_size_x = FieldWidth / static_cast<float>(x_dim);
    header.pixel_size_y = FieldWidth / static_cast<float>(y_dim);
    header.slice_thickness = FieldLength / static_cast<float>(num_slices);
    return header;
}

void fill_volume(float *volume, const velmorant::ImageHeader &header, std::int32_t frame,
                 std::int32_t bed)
{
    const float time = static_cast<float>(frame) / static_cast<float>(header.num_frames);
    const Tissues tissues = tissues_at(time);
    const auto centred = [](std::int32_t pixel, std::int32_t count, float size) {
        return (static_cast<float>(pixel) - static_cast<float>(count - 1) * 0.5F) * size;
    };
    for (std::int32_t z = 0; z < header.num_slices; ++z) {
        for (std::int32_t y = 0; y < header.y_dim; ++y) {
            for (std::int32_t x = 0; x < header.x_dim; ++x) {
                const Place place{centred(x, header.x_dim, header.pixel_size_x),
                                  centred(y, header.y_dim, header.pixel_size_y),
                                  static_cast<float>(z) * header.slice_thickness +
                                      static_cast<float>(bed) * BedStep};
                *volume++ = activity(place, tissues);
            }
        }
    }
}

} // namespace phantom
