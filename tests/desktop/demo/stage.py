# SPDX-License-Identifier: MIT
"""The look of the demonstration's desktop: a background, windows in their places."""

import os
import subprocess

from Xlib import X, Xatom

_LIGHT = ("#dfe9f5", "#b9cbe6")
_DARK = ("#1d2430", "#39435a")
_REQUEST_BYTES = 200_000  # what one request to the X server may carry


def draw_background(desktop):
    """Fills the root window with a soft gradient, also for programs that look through themselves."""
    display = desktop.display
    screen = display.screen()
    width, height = screen.width_in_pixels, screen.height_in_pixels
    above, below = _DARK if desktop.dark else _LIGHT
    answer = desktop.run(["convert", "-size", f"{width}x{height}", f"gradient:{above}-{below}",
                          "-depth", "8", "bgra:-"])
    answer.check_returncode()
    pixmap = screen.root.create_pixmap(width, height, screen.root_depth)
    context = pixmap.create_gc()
    band = _REQUEST_BYTES // (width * 4)
    for y in range(0, height, band):
        rows = min(band, height - y)
        pixmap.put_image(context, 0, y, width, rows, X.ZPixmap, screen.root_depth, 0,
                         answer.stdout[y * width * 4:(y + rows) * width * 4])
    for name in ("_XROOTPMAP_ID", "ESETROOT_PMAP_ID"):
        screen.root.change_property(display.intern_atom(name), Xatom.PIXMAP, 32, [pixmap.id])
    screen.root.change_attributes(background_pixmap=pixmap)
    screen.root.clear_area()
    display.sync()


def place(desktop, application, x, y, width, height):
    """Moves a window's own area to a place, given for the single scale."""
    scale = desktop.scale
    application.window.configure(x=x * scale, y=y * scale, width=width * scale,
                                 height=height * scale)
    desktop.display.sync()


def prepare_toolkits(desktop):
    """Fonts and colours as a desktop's settings would have them, for every toolkit in use."""
    _write(desktop, "gtk-3.0/settings.ini",
           "[Settings]\ngtk-font-name=DejaVu Sans 10\ngtk-icon-theme-name=Adwaita\n"
           f"gtk-application-prefer-dark-theme={'true' if desktop.dark else 'false'}\n")
    theme = "Adwaita-dark" if desktop.dark else "Adwaita"
    _write(desktop, "gtkrc-2.0", f'gtk-theme-name="{theme}"\ngtk-font-name="DejaVu Sans 10"\n'
                                 'gtk-icon-theme-name="Adwaita"\n')
    back, text, base = ("45,45,48", "240,240,240", "34,34,36") if desktop.dark else (
        "246,245,244", "46,52,54", "255,255,255")
    groups = "".join(f"[Colors:{name}]\nBackgroundNormal={colour}\nForegroundNormal={text}\n\n"
                     for name, colour in (("Window", back), ("View", base), ("Button", back),
                                          ("Tooltip", back)))
    _write(desktop, "kdeglobals",
           f"{groups}[Colors:Selection]\nBackgroundNormal=53,132,228\n"
           "ForegroundNormal=255,255,255\n\n"
           "[General]\nfont=DejaVu Sans,10,-1,5,50,0,0,0,0,0\n\n[Icons]\nTheme=Adwaita\n")
    _write(desktop, "featherpad/fp.conf",
           f"[text]\ndarkColorScheme={'true' if desktop.dark else 'false'}\n")
    desktop.env.update({
        "QT_QPA_PLATFORMTHEME": "kde", "KDE_SESSION_VERSION": "5", "KDE_FULL_SESSION": "true",
        "GTK2_RC_FILES": os.path.join(desktop.env["XDG_CONFIG_HOME"], "gtkrc-2.0")})


def as_ordinary_user():
    """A command in front of another under which that one does not warn of the administrator.

    Where this runs as the administrator, as in a container, editors say so in large letters. In a
    user namespace they see an ordinary user; the files stay the same. Nothing where that is not so
    or not allowed.
    """
    if os.geteuid() != 0:
        return []
    command = ["unshare", "--user", "--map-user=1000", "--map-group=1000", "--"]
    allowed = subprocess.run([*command, "true"], capture_output=True, check=False)
    return command if allowed.returncode == 0 else []


def terminal_colours(desktop):
    """Arguments that give the terminal a readable font and the look's colours."""
    back, text = ("#1c1c1e", "#e8e8e8") if desktop.dark else ("#fcfcfc", "#202020")
    return ["-fa", "DejaVu Sans Mono", "-fs", "11", "-bg", back, "-fg", text, "-cr", text]


def _write(desktop, name, text):
    path = os.path.join(desktop.env["XDG_CONFIG_HOME"], name)
    os.makedirs(os.path.dirname(path), exist_ok=True)
    with open(path, "w", encoding="utf-8") as file:
        file.write(text)
