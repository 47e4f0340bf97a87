#include "raster/Pen.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>

namespace quibbits {

namespace {

constexpr double curveTolerance = 0.05;  // of a device pixel

struct Destroy {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    void operator()(cairo_pattern_t* pattern) const { cairo_pattern_destroy(pattern); }
    void operator()(cairo_path_t* path) const { cairo_path_destroy(path); }
};
using SurfacePtr = std::unique_ptr<cairo_surface_t, Destroy>;
using PatternPtr = std::unique_ptr<cairo_pattern_t, Destroy>;
using PathPtr = std::unique_ptr<cairo_path_t, Destroy>;

SurfacePtr surfaceOn(Argb* pixels, int width, int height, int stride) {
    return SurfacePtr(cairo_image_surface_create_for_data(reinterpret_cast<unsigned char*>(pixels),
                                                          CAIRO_FORMAT_ARGB32, width, height,
                                                          stride * static_cast<int>(sizeof(Argb))));
}

void setColor(cairo_t* context, Color c) {
    cairo_set_source_rgba(context, c.red, c.green, c.blue, c.alpha);
}

cairo_line_cap_t capOf(LineCap cap) {
    switch (cap) {
        case LineCap::butt: return CAIRO_LINE_CAP_BUTT;
        case LineCap::round: return CAIRO_LINE_CAP_ROUND;
        case LineCap::square: return CAIRO_LINE_CAP_SQUARE;
    }
    return CAIRO_LINE_CAP_BUTT;
}

cairo_line_join_t joinOf(LineJoin join) {
    switch (join) {
        case LineJoin::miter: return CAIRO_LINE_JOIN_MITER;
        case LineJoin::round: return CAIRO_LINE_JOIN_ROUND;
        case LineJoin::bevel: return CAIRO_LINE_JOIN_BEVEL;
    }
    return CAIRO_LINE_JOIN_MITER;
}

/// Draws only the stretch between two lengths of a path made of straight lines.
class Trimmer {
public:
    Trimmer(cairo_t* context, double from, double to) : context_(context), from_(from), to_(to) {}

    void moveTo(Point p) {
        pen_ = p;
        down_ = false;
    }
    void lineTo(Point p) {
        const double length = distance(pen_, p);
        const double enter = std::max(from_ - walked_, 0.0);
        const double leave = std::min(to_ - walked_, length);
        if (length > 0 && leave > enter) {
            const Vector way = (p - pen_) * (1 / length);
            const Point first = pen_ + way * enter;
            const Point last = pen_ + way * leave;
            if (!down_) cairo_move_to(context_, first.x, first.y);
            cairo_line_to(context_, last.x, last.y);
            down_ = leave == length;
        }
        walked_ += length;
        pen_ = p;
    }

private:
    cairo_t* context_;
    double from_;
    double to_;
    double walked_ = 0;
    Point pen_;
    bool down_ = false;
};

/// Calls visit(point, draws) for each corner of a flattened path.
template <typename Visit>
void visitCorners(const cairo_path_t& path, Visit visit) {
    Point start;
    for (int i = 0; i < path.num_data; i += path.data[i].header.length) {
        const auto type = path.data[i].header.type;
        if (type == CAIRO_PATH_CLOSE_PATH) {
            visit(start, true);
            continue;
        }
        const Point p{path.data[i + 1].point.x, path.data[i + 1].point.y};
        if (type == CAIRO_PATH_MOVE_TO) start = p;
        visit(p, type == CAIRO_PATH_LINE_TO);
    }
}

void addStops(cairo_pattern_t* pattern, const Gradient& gradient) {
    const std::size_t count = gradient.colors.size();
    const bool named = gradient.locations.size() == count;
    for (std::size_t i = 0; i < count; ++i) {
        const Color& c = gradient.colors[i];
        const double even = count > 1 ? static_cast<double>(i) / static_cast<double>(count - 1) : 0;
        cairo_pattern_add_color_stop_rgba(pattern, named ? gradient.locations[i] : even, c.red,
                                          c.green, c.blue, c.alpha);
    }
}

}  // namespace

void Pen::Release::operator()(cairo_t* context) const {
    cairo_destroy(context);
}

Pen::Pen(const Canvas& canvas, const Affine& toDevice) {
    const auto surface =
        surfaceOn(canvas.pixels, canvas.area.width, canvas.area.height, canvas.stride);
    context_.reset(cairo_create(surface.get()));
    cairo_set_tolerance(context_.get(), curveTolerance);
    cairo_translate(context_.get(), -canvas.area.x, -canvas.area.y);
    // A context that is given a matrix without an area breaks; nothing is to be seen there anyway.
    if (!toDevice.hasArea()) {
        cairo_clip(context_.get());
        return;
    }
    const cairo_matrix_t matrix{toDevice.a, toDevice.b,  toDevice.c,
                                toDevice.d, toDevice.tx, toDevice.ty};
    cairo_transform(context_.get(), &matrix);
}

void Pen::addPath(const Path& path) {
    auto* c = context_.get();
    for (const auto& e : path.elements()) {
        switch (e.verb) {
            case Path::Verb::move: cairo_move_to(c, e.end.x, e.end.y); break;
            case Path::Verb::line: cairo_line_to(c, e.end.x, e.end.y); break;
            case Path::Verb::close: cairo_close_path(c); break;
            case Path::Verb::cubic:
                cairo_curve_to(c, e.control1.x, e.control1.y, e.control2.x, e.control2.y, e.end.x,
                               e.end.y);
                break;
            case Path::Verb::quad: {
                Point pen;
                cairo_get_current_point(c, &pen.x, &pen.y);
                const Point a = pen + (e.control1 - pen) * (2.0 / 3);
                const Point b = e.end + (e.control1 - e.end) * (2.0 / 3);
                cairo_curve_to(c, a.x, a.y, b.x, b.y, e.end.x, e.end.y);
                break;
            }
        }
    }
}

void Pen::trimPath(double start, double end) {
    const PathPtr path(cairo_copy_path_flat(context_.get()));
    double length = 0;
    Point pen;
    visitCorners(*path, [&](Point p, bool draws) {
        if (draws) length += distance(pen, p);
        pen = p;
    });
    cairo_new_path(context_.get());
    Trimmer trimmer(context_.get(), length * start, length * end);
    visitCorners(*path,
                 [&](Point p, bool draws) { draws ? trimmer.lineTo(p) : trimmer.moveTo(p); });
}

void Pen::fillRounded(Rect box, double radius, Color color) {
    addPath(Path::roundedRect(box, radius));
    setColor(context_.get(), color);
    cairo_fill(context_.get());
}

void Pen::frameRounded(Rect box, double radius, double width, Color color) {
    const Rect inner = box.inset(width);
    addPath(Path::roundedRect(box, radius));
    if (!inner.isEmpty()) addPath(Path::roundedRect(inner, std::max(0.0, radius - width)));
    setColor(context_.get(), color);
    cairo_set_fill_rule(context_.get(), CAIRO_FILL_RULE_EVEN_ODD);
    cairo_fill(context_.get());
    cairo_set_fill_rule(context_.get(), CAIRO_FILL_RULE_WINDING);
}

void Pen::drawShape(const Shape& shape, const Appearance& values) {
    auto* c = context_.get();
    addPath(shape.path);
    if (values.fill.alpha > 0) {
        setColor(c, values.fill);
        cairo_fill_preserve(c);
    }
    const double start = std::clamp(values.strokeStart, 0.0, 1.0);
    const double end = std::clamp(values.strokeEnd, 0.0, 1.0);
    if (values.stroke.alpha > 0 && values.lineWidth > 0 && end > start) {
        if (start > 0 || end < 1) trimPath(start, end);
        setColor(c, values.stroke);
        cairo_set_line_width(c, values.lineWidth);
        cairo_set_line_cap(c, capOf(shape.cap));
        cairo_set_line_join(c, joinOf(shape.join));
        cairo_set_miter_limit(c, miterLimit);
        cairo_set_dash(c, shape.dash.data(), static_cast<int>(shape.dash.size()), 0);
        cairo_stroke_preserve(c);
    }
    cairo_new_path(c);
}

void Pen::drawGradient(const Gradient& gradient, Rect box) {
    if (gradient.colors.empty() || box.isEmpty()) return;
    auto* c = context_.get();
    cairo_save(c);
    cairo_translate(c, box.x, box.y);
    cairo_scale(c, box.width, box.height);
    cairo_rectangle(c, 0, 0, 1, 1);
    const Point from = gradient.start;
    const Point to = gradient.end;
    PatternPtr pattern;
    if (gradient.kind == Gradient::Kind::axial) {
        pattern.reset(cairo_pattern_create_linear(from.x, from.y, to.x, to.y));
    } else {  // an ellipse whose half axes are the steps to the end
        const double width = std::abs(to.x - from.x);
        const double height = std::abs(to.y - from.y);
        const double across = width > 0 ? width : height;
        const double up = height > 0 ? height : width;
        pattern.reset(cairo_pattern_create_radial(0, 0, 0, 0, 0, 1));
        const bool flat = !(across > 0);
        const cairo_matrix_t toUnit{
            flat ? 1 : 1 / across,  0, 0, flat ? 1 : 1 / up, flat ? 0 : -from.x / across,
            flat ? 0 : -from.y / up};
        cairo_pattern_set_matrix(pattern.get(), &toUnit);
    }
    addStops(pattern.get(), gradient);
    cairo_set_source(c, pattern.get());
    cairo_fill(c);
    cairo_restore(c);
}

void Pen::drawPicture(const Image& image, Rect part, Rect box) {
    const PixelRect source =
        PixelRect::around({part.x * image.width(), part.y * image.height(),
                           part.width * image.width(), part.height * image.height()})
            .intersected({0, 0, image.width(), image.height()});
    if (source.isEmpty() || box.isEmpty()) return;
    Bitmap pixels(source);
    for (int y = source.y; y < source.y + source.height; ++y) {
        for (int x = source.x; x < source.x + source.width; ++x) {
            pixels.canvas().row(y)[x] = image.at(x, y);
        }
    }
    const auto surface =
        surfaceOn(pixels.canvas().pixels, source.width, source.height, source.width);
    auto* c = context_.get();
    cairo_save(c);
    cairo_rectangle(c, box.x, box.y, box.width, box.height);
    cairo_translate(c, box.x, box.maxY());  // rows of a picture run downwards
    cairo_scale(c, box.width / (part.width * image.width()),
                -box.height / (part.height * image.height()));
    cairo_translate(c, source.x - part.x * image.width(), source.y - part.y * image.height());
    cairo_set_source_surface(c, surface.get(), 0, 0);
    cairo_pattern_set_filter(cairo_get_source(c), CAIRO_FILTER_GOOD);
    cairo_pattern_set_extend(cairo_get_source(c), CAIRO_EXTEND_PAD);
    cairo_fill(c);
    cairo_restore(c);
}

}  // namespace quibbits
