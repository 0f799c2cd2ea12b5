#pragma once

/// Whether the phone was customised with the theme that leaves photo styles and the bokeh MD mode out:
/// property "ro.boot.product.theme_customize" is exactly "NoTesmor".
bool IsThemeNoTesmor();
