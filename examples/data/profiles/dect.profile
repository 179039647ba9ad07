<?xml version="1.0" encoding="UTF-8"?>
<profile id="dect" showInChannelList="1">
  <label lang="en">DECT</label>
  <label lang="de">DECT</label>
  <description lang="en">Carriers 0 to 9 of the European cordless telephones, 1.728 MHz apart, in the band 1880 to 1900 MHz. Source: ETSI EN 300 175-2.</description>
  <description lang="de">Träger 0 bis 9 der europäischen Schnurlostelefone im Abstand von 1,728 MHz, im Band 1880 bis 1900 MHz. Quelle: ETSI EN 300 175-2.</description>
  <begin>1880 MHz</begin>
  <end>1900 MHz</end>
  <channels>
    <color>#6b8e23</color>
    <!-- Carrier c lies on 1897.344 MHz - c * 1.728 MHz: the numbers fall as the frequency rises. -->
    <channels start="1880.928 MHz" width="1.728 MHz" first="9" count="10" step="-1"/>
  </channels>
</profile>
