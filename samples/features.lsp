;; The features of the sample template, and how they get into it.
;;
;; A feature is a name, its category, and its attributes: field, prompt, default, list.
;;   field    "~" in front: must be set; then "." a whole number, ".." a number
;;   default  one of the list, or a special code: "$EQN=$NOR" is the northing of the point, "$EQN=$DAT" the date,
;;            "$EQN=HEIGHT*2" twice the row HEIGHT
;;   list     choices with commas between them; an attribute with a default has a list

(setq sample:features
  '(("TREE" "VEGETATION"
      ("~SPECIES"    "Species"                           "WHITE OAK" "WHITE OAK,RED OAK,LOBLOLLY PINE,RED MAPLE,SWEETGUM,DOGWOOD,OTHER")
      ("~.DBH"       "Diameter at breast height (inches)" ""         "")
      ("..HEIGHT"    "Height (feet)"                     ""          "")
      ("..SPREAD"    "Drip line radius (feet)"           ""          "")
      ("CONDITION"   "Condition"                         "GOOD"      "GOOD,FAIR,POOR,DEAD")
      ("TWICE"       "Twice the height"                  "$EQN=HEIGHT*2" "$EQN=HEIGHT*2")
      ("NORTHING"    "Northing"                          "$EQN=$NOR" "$EQN=$NOR")
      ("EASTING"     "Easting"                           "$EQN=$EAS" "$EQN=$EAS")
      ("ELEVATION"   "Elevation"                         "$EQN=$ELV" "$EQN=$ELV")
      ("DESCRIPTION" "Description"                       "$EQN=$DSC" "$EQN=$DSC")
      ("DATE"        "Date"                              "$EQN=$DAT" "$EQN=$DAT")
      ("REMARKS"     "Remarks"                           ""          ""))
    ("POLE" "UTILITIES"
      ("~POLE_ID"    "Pole number"                       ""          "")
      ("~OWNER"      "Owner"                             "COUNTY POWER COOP" "CITY OF MONROE,COUNTY POWER COOP,VALLEY LIGHT CO.,BELL CREEK TELEPHONE")
      ("MATERIAL"    "Material"                          "WOOD"      "WOOD,STEEL,CONCRETE")
      (".CLASS"      "Class"                             ""          "")
      ("~..HEIGHT"   "Height above ground (feet)"        ""          "")
      ("LAMP"        "Street lamp"                       "NO"        "YES,NO")
      ("TOP"         "Elevation of the top"              "$EQN=$ELV+HEIGHT" "$EQN=$ELV+HEIGHT")
      ("LATITUDE"    "Latitude"                          "$EQN=$LAT" "$EQN=$LAT")
      ("LONGITUDE"   "Longitude"                         "$EQN=$LON" "$EQN=$LON")
      ("TIME"        "Time"                              "$EQN=$TIM" "$EQN=$TIM")
      ("INSTRUMENT"  "Instrument"                        "$EQN=$INS" "$EQN=$INS"))
    ("MANHOLE" "UTILITIES"
      ("~MH_NO"      "Manhole number"                    ""          "")
      ("TYPE"        "Type"                              "SANITARY"  "SANITARY,STORM,TELEPHONE,POWER")
      ("~..DEPTH"    "Depth to invert (feet)"            ""          "")
      ("RIM"         "Rim elevation"                     "$EQN=$ELV" "$EQN=$ELV")
      ("INVERT"      "Invert elevation"                  "$EQN=$ELV-DEPTH" "$EQN=$ELV-DEPTH")
      (".PIPES"      "Number of pipes"                   ""          "")
      ("COVER"       "Cover"                             "BOLTED"    "BOLTED,LOOSE"))
    ("PARCEL" "LAND"
      ("~LOT"        "Lot"                               ""          "")
      ("OWNER"       "Owner"                             ""          "")
      ("ZONING"      "Zoning"                            "R-1"       "R-1,R-2,C-1,I-1")
      ("..ACRES"     "Acres by deed"                     ""          "")
      ("DATE"        "Date"                              "$EQN=$DAT" "$EQN=$DAT"))))

;; One record of a table, as the bulk add takes it: a marker, the table, and pairs of field and value.
(defun sample:record (table pairs)
  (cons 0 (cons table (apply 'append (mapcar '(lambda (pair) (list (car pair) (cadr pair))) pairs)))))

(defun sample:attribute-record (feature attribute)
  (sample:record "ZGEO_SMART_PROMPTING"
    (list (list "GIS_NAME" feature)
          (list "FIELD_NAME" (car attribute))
          (list "FIELD_PROMPT" (cadr attribute))
          (list "DEFAULT_VALUE" (caddr attribute))
          (list "LIST_VALUES" (cadddr attribute)))))

(defun sample:category-record (index category feature)
  (sample:record "ZGEO_CAT"
    (list (list "INDEX_CAT_GIS" (itoa index))
          (list "CAT_GIS_NAME" category)
          (list "GIS_NAME" feature))))

;; Puts the features into an empty template. 1.0 when all went well.
(defun sample:fill-template (template / records index feature attribute)
  (setq index 0)
  (foreach feature sample:features
    (setq index (1+ index)
          records (append records (sample:category-record index (cadr feature) (car feature))))
    (foreach attribute (cddr feature)
      (setq records (append records (sample:attribute-record (car feature) attribute)))))
  (apply 'cf:gis_smart_prompting (cons 19 (cons template records))))
