# The icons in use: our name for each, and the drawing of the Breeze theme that stands for it. They are taken from the
# installed theme into the program, so that they are there without a theme, too.
set(OSTRIVANE_ICONS
    cpu=actions/22/show-gpu-effects
    memorychip=devices/16/media-flash-memory-stick
    internaldrive=devices/16/drive-harddisk
    externaldrive.badge.plus=devices/16/drive-multidisk
    opticaldiscdrive=devices/16/drive-optical
    battery.75percent=status/16/battery-080
    battery.25percent=status/16/battery-030
    thermometer.medium=status/16/temperature-normal
    thermometer.high=status/16/temperature-warm
    gearshape.2=actions/16/run-build
    gauge.with.dots.needle.50percent=actions/16/speedometer
    gauge.with.dots.needle.67percent=actions/16/speedometer
    rectangle.3.group=actions/16/view-multiple-objects
    arrow.left.arrow.right=actions/16/document-swap
    shippingbox=actions/16/package
    shippingbox.circle=actions/16/archive-extract
    server.rack=places/16/network-server
    moon.zzz=actions/22/system-suspend
    bolt=actions/16/network-connect
    brain=actions/16/automated-tasks
    app.dashed=actions/16/view-group
    hammer=actions/16/tools
    doc=mimetypes/16/unknown
    doc.text=mimetypes/16/text-x-generic
    doc.plaintext=mimetypes/16/text-x-log
    photo=actions/16/photo
    photo.on.rectangle=places/16/folder-pictures
    film=places/16/folder-videos
    music.note=mimetypes/16/audio-x-generic
    music.note.house=places/16/folder-music
    archivebox=places/16/folder-tar
    folder.badge.gearshape=places/16/folder-development
    clock.arrow.circlepath=actions/16/backup
    trash=places/16/user-trash
    envelope=actions/16/mail-message
    iphone=devices/16/smartphone
    iphone.gen3=devices/16/phone
    iphone.gen3.radiowaves.left.and.right=devices/16/network-wireless-hotspot
    iphone.and.arrow.forward=apps/16/kdeconnect
    arrow.down.app=actions/16/run-build-install
    arrow.down.circle=places/16/folder-download
    menubar.dock.rectangle=places/16/user-desktop
    camera.viewfinder=devices/16/camera-photo
    record.circle=actions/16/media-record
    tablecells=actions/16/table
    rectangle.on.rectangle=actions/16/view-presentation
    book.closed=actions/16/documentation
    paintpalette=actions/symbolic/palette-symbolic
    chevron.left.forwardslash.chevron.right=actions/16/format-text-code
    cylinder.split.1x2=places/16/server-database
    textformat=actions/16/font
    page.overview=actions/16/view-list-icons
    page.health=actions/16/love
    page.cpu=actions/22/show-gpu-effects
    page.memory=devices/16/media-flash-memory-stick
    page.gpu=actions/16/view-multiple-objects
    page.disk=devices/16/drive-harddisk
    page.network=devices/16/network-wireless
    page.battery=status/16/battery-080
    page.thermal=status/16/temperature-normal
    page.applications=actions/16/window-duplicate
    page.processes=actions/16/view-process-all
    page.projects=places/16/folder-git
    page.ports=devices/16/network-rj45-female
    page.ai=actions/16/automated-tasks
    page.history=actions/16/view-history
    page.alerts=actions/16/notifications
    page.sessions=actions/16/chronometer
    page.storage=devices/16/drive-partition
    page.organizer=actions/16/folder-sync
    page.audio=status/16/audio-volume-high
    page.devices=devices/16/network-bluetooth
    page.settings=actions/16/configure
    back=actions/16/go-previous
    forward=actions/16/go-next
    up=actions/16/go-up
    down=actions/16/arrow-down
    search=actions/16/edit-find
    filter=actions/16/view-filter
    refresh=actions/16/view-refresh
    more=actions/16/overflow-menu
    close=actions/16/tab-close
    stop=actions/16/process-stop
    play=actions/16/media-playback-start
    stopsquare=actions/16/media-playback-stop
    export=actions/16/document-export
    reveal=actions/16/document-open-folder
    info=actions/16/help-about
    lock=actions/16/lock
    folder=actions/16/tag-folder
    home=actions/16/go-home
    list=actions/16/view-list-details
    map=actions/16/view-form
    check=actions/16/dialog-ok
    link=actions/16/link
    sidebar=actions/16/sidebar-collapse-left
    delete=actions/16/edit-delete
    undo=actions/16/edit-undo
    flag=actions/16/flag
    globe=actions/16/globe
    bell=actions/16/notifications
    clear=actions/16/edit-clear-history
    bug=actions/16/tools-report-bug
    wired=devices/16/network-wired
    vpn=devices/16/network-vpn
    headphones=devices/22/audio-headphones
    mic=devices/16/audio-input-microphone
    keyboard=devices/16/input-keyboard
    mouse=devices/16/input-mouse
    update=actions/16/download
    computer=devices/16/computer-laptop
    eject=actions/16/media-eject
    usb=devices/16/drive-removable-media-usb)

# Adds the drawings to a target as `:/icons/NAME.svg`.
function(ostrivane_add_icons target)
  find_path(OSTRIVANE_BREEZE index.theme
            PATHS /usr/share/icons/breeze /usr/local/share/icons/breeze NO_DEFAULT_PATH
            DOC "Folder of the Breeze icon theme")
  if(NOT OSTRIVANE_BREEZE)
    message(FATAL_ERROR "The Breeze icon theme is missing (package breeze-icon-theme); -DOSTRIVANE_BREEZE=FOLDER names it")
  endif()
  set(entries "")
  foreach(icon IN LISTS OSTRIVANE_ICONS)
    string(REPLACE "=" ";" pair "${icon}")
    list(GET pair 0 name)
    list(GET pair 1 drawing)
    file(REAL_PATH "${OSTRIVANE_BREEZE}/${drawing}.svg" path) # some are links to others
    if(NOT EXISTS "${path}")
      message(FATAL_ERROR "The icon theme at ${OSTRIVANE_BREEZE} has no ${drawing}.svg")
    endif()
    string(APPEND entries "<file alias=\"${name}.svg\">${path}</file>\n")
  endforeach()
  set(list "${CMAKE_CURRENT_BINARY_DIR}/icons.qrc")
  file(CONFIGURE OUTPUT "${list}" CONTENT "<RCC><qresource prefix=\"/icons\">\n${entries}</qresource></RCC>\n" @ONLY)
  qt_add_resources(sources "${list}")
  target_sources(${target} PRIVATE ${sources})
  set_source_files_properties(${sources} PROPERTIES SKIP_AUTOMOC ON SKIP_LINTING ON)
endfunction()
