#include "reports/report_layouts.h"

namespace reports {

namespace {
constexpr frame::Text kIndex{"Index", "序号"};
constexpr frame::Text kX{"X", "X坐标"};
constexpr frame::Text kY{"Y", "Y坐标"};
constexpr frame::Text kZ{"Z", "Z坐标"};
constexpr frame::Text kArea{"Area", "面积"};
constexpr frame::Text kPerimeter{"Perimeter", "周长"};
// Shown the same in both languages.
constexpr frame::Text chineseOnly(std::string_view zh) { return {zh, zh}; }
}  // namespace

ReportLayout polylineLayout() {
  // The English caption keeps the ideographic comma.
  return {{"Lines、Arcs、Polylines、Splines", "直线、圆弧、多段线、样条曲线坐标"},
          {{5, kIndex}, {5, {"VertexNumber", "顶点序号"}}, {20, kX}, {20, kY}, {20, kZ},
           {15, {"Length", "长度"}}, {15, kArea}}};
}

ReportLayout circleLayout() {
  return {{"Center coordinates and radius", "圆心坐标和半径"},
          {{5, kIndex}, {15, kX}, {15, kY}, {15, kZ}, {20, {"Radius", "半径"}}, {15, kPerimeter}, {15, kArea}}};
}

ReportLayout ellipseLayout() {
  return {{"Ellipse center coordinates and radius", "椭圆圆心坐标和半径"},
          {{4, kIndex}, {16, kX}, {16, kY}, {16, kZ}, {12, {"Major axis", "长轴"}}, {12, {"Minor axis", "短轴"}},
           {12, kPerimeter}, {12, kArea}}};
}

ReportLayout arcLayout() {
  // "Perimiter" is the arc report's own spelling.
  return {{"Arc center coordinates and radius", "圆弧圆心坐标和半径"},
          {{4, kIndex}, {16, kX}, {16, kY}, {16, kZ}, {12, {"Radius", "半径"}}, {12, {"StartAngle", "起点角度"}},
           {12, {"EndAngle", "终点角度"}}, {12, {"Perimiter", "周长"}}}};
}

ReportLayout intersectionLayout() {
  return {chineseOnly("交点坐标"),
          {{10, chineseOnly("序号")}, {30, chineseOnly("X坐标")}, {30, chineseOnly("Y坐标")}, {30, chineseOnly("Z坐标")}}};
}

}  // namespace reports
